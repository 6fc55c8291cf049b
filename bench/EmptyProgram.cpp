// The least that a process costs: it starts with the libraries of the converter, and ends.

int main() { return 0; }
