// Converts an application file and prints what its document lacks: convert_and_compare INPUT OUTPUT
#include <iostream>

#include "appfile/TZanfoFile.h"
#include "fields/TLossObserver.h"

using zaf::Status;

struct TPrinter final : zaf::TLossObserver {
  void OnLoss(zaf::TLoss&& loss) override {
    std::cout << loss.action << ": " << loss.GetText() << "\n";
  }
};

int Fail(std::string_view what) {
  std::cerr << what << "\n";
  return 1;
}

int main(int count, char** arguments) {
  if (count != 3) return Fail("usage: convert_and_compare INPUT OUTPUT");
  TPrinter printer;
  zaf::TZanfoFile application, copy;
  application.SetObserver(&printer);
  zaf::TDataFile input, output, document;
  if (input.Open(arguments[1], zaf::TOpenMode::kRead) != Status::kOk)
    return Fail("The input cannot be opened");
  if (application.Load(input, nullptr) != Status::kOk)
    return Fail(application.GetErrorPlace().reason);
  if (output.OpenNew(arguments[2]) != Status::kOk ||
      application.Save(output, nullptr, zaf::Protection::kPlain) != Status::kOk ||
      output.Publish() != Status::kOk)
    return Fail("The document cannot be written");
  output.Close();
  if (document.Open(arguments[2], zaf::TOpenMode::kRead) != Status::kOk ||
      copy.Load(document, nullptr) != Status::kOk)
    return Fail("The document cannot be read back");
  std::cout << (application.IsEqual(copy) ? "equal\n" : "different\n");
}
