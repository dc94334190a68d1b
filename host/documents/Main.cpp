// Writes the documents that are made of the table of options: ravelin_documents FOLDER.
#include <cstdio>
#include <exception>
#include <string>

#include "SatCommonUtils/Version.h"
#include "host/CommandLine.h"
#include "host/PendingFile.h"
#include "host/documents/BashCompletion.h"
#include "host/documents/FishCompletion.h"
#include "host/documents/ManPage.h"
#include "host/documents/ZshCompletion.h"

namespace {

void Write(const std::string& path, const std::string& text) {
  ravelin::PendingFile file(path);
  file.Write(text.data(), text.size());
  file.Commit();
}

void WriteDocuments(const std::string& folder) {
  const ravelin::DocumentedCommand program =
      ravelin::ReadOptionTable(*ravelin::DescribeCommandLine());
  Write(folder + "/ravelin.1", ravelin::ManPage(program, RAVELIN_VERSION));
  Write(folder + "/ravelin.bash", ravelin::BashCompletion(program));
  Write(folder + "/_ravelin", ravelin::ZshCompletion(program));
  Write(folder + "/ravelin.fish", ravelin::FishCompletion(program));
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fprintf(stderr, "usage: ravelin_documents FOLDER\n");
    return 2;
  }
  WriteDocuments(argv[1]);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "ravelin_documents: %s\n", error.what());
  return 1;
}
