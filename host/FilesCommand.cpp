#include "host/FilesCommand.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "host/FolderListing.h"
#include "host/HostError.h"
#include "host/ValueKind.h"

namespace ravelin {
namespace {

using Json = nlohmann::ordered_json;

struct ListArguments {
  ListingRequest request;
  bool json = false;
};

struct FindArguments {
  std::string folder;
  std::string name;
};

void Print(const std::string& text) {
  std::cout << text << std::flush;
  if (!std::cout) {
    throw HostError("standard output", "cannot be written", "free some space or write elsewhere");
  }
}

/// Paths that begin with ':' mean something else to the module.
std::string PlainPath(const std::string& folder) {
  return folder.rfind(':', 0) == 0 ? "./" + folder : folder;
}

std::string ListingText(const FolderListing& listing) {
  std::string text;
  for (const ListedFolder& folder : listing.folders) {
    for (const std::string& file : folder.files) {
      text += Printable(PathIn(folder.path, file)) + "\n";
    }
  }
  return text;
}

Json DescribeListing(const FolderListing& listing, const ListingRequest& request) {
  unsigned long count = 0;
  Json folders = Json::array(), skipped = Json::array();
  for (const ListedFolder& folder : listing.folders) {
    folders.push_back({{"folder", folder.path}, {"files", folder.files}});
    count += folder.files.size();
  }
  for (const SkippedFolder& folder : listing.skipped) {
    skipped.push_back({{"folder", folder.path}, {"reason", folder.reason}});
  }
  const Json mask = request.hasMask ? Json(KvAnsiToChar(request.mask, kvEncodingUtf8)) : Json();
  return {{"folder", request.folder}, {"mask", mask},       {"count", count},
          {"folders", folders},       {"skipped", skipped}, {"namesNotUtf8", listing.namesNotUtf8}};
}

void PrintNotes(const FolderListing& listing, const std::string& folder) {
  for (const SkippedFolder& skipped : listing.skipped) {
    std::cerr << "ravelin: " << Printable(skipped.path)
              << ": note: cannot be read: " << skipped.reason << "; it is skipped\n";
  }
  if (listing.namesNotUtf8 != 0) {
    std::cerr << "ravelin: " << Printable(folder)
              << ": note: names that are not UTF-8: " << listing.namesNotUtf8
              << "; they are left out\n";
  }
}

void List(ListArguments& arguments) {
  arguments.request.folder = PlainPath(arguments.request.folder);
  const FolderListing listing = ListFolders(arguments.request);
  Print(arguments.json ? DescribeListing(listing, arguments.request).dump(2) + "\n"
                       : ListingText(listing));
  PrintNotes(listing, arguments.request.folder);
}

void Find(const FindArguments& arguments) {
  const std::string folder = PlainPath(arguments.folder);
  CheckFolder(folder);
  std::string name;
  if (!SatCommonUtils::FileExists(folder, arguments.name, &name)) {
    throw HostError(folder, "has no file '" + arguments.name + "', in whatever letter case",
                    "list its files with ravelin files");
  }
  Print(Printable(PathIn(folder, name)) + "\n");
}

CLI::App* AddFind(CLI::App& files) {
  const auto arguments = std::make_shared<FindArguments>();
  CLI::App* command = files.add_subcommand("find", "Look a file up, letter case ignored");
  command->add_option("FOLDER", arguments->folder, "Folder to look in")
      ->type_name("")
      ->check(FolderValue())
      ->required();
  command->add_option("NAME", arguments->name, "Name of the file; *, ? and [...] are wildcards")
      ->type_name("")
      ->required();
  command->footer("Example:\n  ravelin files find product scene_mtl.txt");
  command->callback([arguments] { Find(*arguments); });
  return command;
}

}  // namespace

void AddFilesCommand(CLI::App& app) {
  const auto arguments = std::make_shared<ListArguments>();
  ListingRequest& request = arguments->request;
  CLI::App* command = app.add_subcommand("files", "List the files of a folder or look one up");
  CLI::App* find = AddFind(*command);
  CLI::Option* folder = command->add_option("FOLDER", request.folder, "Folder to list")
                            ->type_name("")
                            ->check(FolderValue());
  CLI::Option* mask =
      command->add_option("--mask", request.mask, "List what matches, letter case ignored")
          ->type_name("MASK");
  CLI::Option* recursive =
      command->add_flag("--recursive", request.recursive, "List the folders below, too");
  CLI::Option* json = command->add_flag("--json", arguments->json, "Print JSON instead of text");
  for (CLI::Option* option : {folder, mask, recursive, json}) find->excludes(option);
  command->footer("Example:\n  ravelin files product --recursive --mask '*.imd'");
  command->callback([find, folder, mask, arguments] {
    if (find->parsed()) return;
    if (folder->empty()) throw CLI::RequiredError("FOLDER");
    arguments->request.hasMask = !mask->empty();
    List(*arguments);
  });
}

}  // namespace ravelin
