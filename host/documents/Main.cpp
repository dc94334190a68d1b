// Writes the documents that are made of the table of options: ravelin_documents FOLDER.
#include <cstdio>
#include <exception>
#include <string>

#include "SatCommonUtils/Version.h"
#include "host/CommandLine.h"
#include "host/documents/BashCompletion.h"
#include "host/documents/FishCompletion.h"
#include "host/documents/ManPage.h"
#include "host/documents/ZshCompletion.h"
#include "host/io/TextOutput.h"

namespace {

void WriteDocuments(const std::string& folder) {
  const ravelin::DocumentedCommand program =
      ravelin::ReadOptionTable(*ravelin::DescribeCommandLine());
  ravelin::WriteTextOutput(ravelin::ManPage(program, RAVELIN_VERSION), folder + "/ravelin.1");
  ravelin::WriteTextOutput(ravelin::BashCompletion(program), folder + "/ravelin.bash");
  ravelin::WriteTextOutput(ravelin::ZshCompletion(program), folder + "/_ravelin");
  ravelin::WriteTextOutput(ravelin::FishCompletion(program), folder + "/ravelin.fish");
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
