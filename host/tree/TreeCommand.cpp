#include "host/tree/TreeCommand.h"

#include <memory>
#include <string>

#include "host/io/TextEncoding.h"
#include "host/io/TextInput.h"
#include "host/io/TextOutput.h"
#include "host/tree/TreeConversion.h"
#include "host/tree/TreeListing.h"

namespace ravelin {
namespace {

using SatCommonUtils::TStringTree;

constexpr unsigned long kLongestInput = 1UL << 28;

struct Arguments {
  std::string input;
  std::string output;
  std::string section = "tree";
  bool json = false;
};

void ReadText(const TextInput& input, TStringTree* tree) {
  ReadTreeText(DecodedText(input.text, input.name), input.name, tree);
}

void ReadXml(const TextInput& input, const std::string& section, TStringTree* tree) {
  // XML tells its encoding itself.
  RefuseUtf32(input.text, input.name);
  ReadTreeXml(input.text, section, input.name, tree);
}

void TextToXml(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  ReadText(ReadTextInput(arguments.input, kLongestInput), &tree);
  WriteTextOutput(TreeXml(tree, arguments.section), arguments.output);
}

void XmlToText(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  const TextInput input = ReadTextInput(arguments.input, kLongestInput);
  ReadXml(input, arguments.section, &tree);
  WriteTextOutput(TreeText(tree, input.name), arguments.output);
}

void Show(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  const TextInput input = ReadTextInput(arguments.input, kLongestInput);
  if (IsTreeText(DecodedText(input.text, input.name))) {
    ReadText(input, &tree);
  } else {
    ReadXml(input, arguments.section, &tree);
  }
  const std::string listing = arguments.json ? TreeJson(tree, input.name) : TreeListing(tree);
  WriteTextOutput(listing, arguments.output);
}

/// One thing that is done with a tree, and how its subcommand is described.
struct Job {
  const char* name;
  const char* description;
  const char* input;
  const char* output;
  const char* section;
  const char* footer;
  void (*run)(const Arguments&);
};

constexpr Job kTextToXml = {"text2xml",
                            "Convert a tree from indented text to XML-ini",
                            "Tree as text, - for standard input",
                            "XML to write (default: standard output)",
                            "Section that holds the tree; empty for the root",
                            "Example:\n  ravelin tree text2xml product.txt -o product.xml",
                            TextToXml};
constexpr Job kXmlToText = {"xml2text",
                            "Convert a tree from XML-ini to indented text",
                            "XML-ini, - for standard input",
                            "Text to write (default: standard output)",
                            "Section that holds the tree; empty for the root",
                            "Example:\n  ravelin tree xml2text product.xml -o product.txt",
                            XmlToText};
constexpr Job kShow = {"show",
                       "List what a tree of either form holds",
                       "Tree as text or XML-ini, - for standard input",
                       "Listing to write (default: standard output)",
                       "Section of XML that holds the tree; empty for the root",
                       "Example:\n  ravelin tree show product.xml",
                       Show};

void AddJob(CommandEntry& tree, const Job& job) {
  const auto arguments = std::make_shared<Arguments>();
  CommandEntry command = tree.AddCommand(job.name, job.description);
  command.AddOption("IN", arguments->input, job.input).TypeName("").Kind(FileValue()).Required();
  command.AddOption("-o,--output", arguments->output, job.output).TypeName("OUT").Kind(FileValue());
  command.AddOption("--section", arguments->section, job.section).TypeName("NAME").ShowDefault();
  if (job.run == Show) command.AddFlag("--json", arguments->json, "Write JSON instead of text");
  command.Footer(job.footer);
  command.OnRun([&job, arguments] { job.run(*arguments); });
}

}  // namespace

void AddTreeCommand(CommandEntry& program) {
  CommandEntry tree = program.AddCommand("tree", "Convert and list trees of tagged metadata");
  tree.RequireCommand();
  for (const Job* job : {&kTextToXml, &kXmlToText, &kShow}) AddJob(tree, *job);
  tree.Footer("Example:\n  ravelin tree text2xml product.txt | ravelin tree show -");
}

}  // namespace ravelin
