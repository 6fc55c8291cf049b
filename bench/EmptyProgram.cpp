// Measures the minimum cost of a process: starts with the libraries of the converter and ends.

int main() { return 0; }
