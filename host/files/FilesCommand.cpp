#include "host/files/FilesCommand.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "host/HostError.h"
#include "host/UsageError.h"
#include "host/files/FolderListing.h"
#include "host/io/TextOutput.h"

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
  PrintText(arguments.json ? DescribeListing(listing, arguments.request).dump(2) + "\n"
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
  PrintText(Printable(PathIn(folder, name)) + "\n");
}

CommandEntry AddFind(CommandEntry& files) {
  const auto arguments = std::make_shared<FindArguments>();
  CommandEntry command = files.AddCommand("find", "Look a file up, letter case ignored");
  command.AddOption("FOLDER", arguments->folder, "Folder to look in")
      .TypeName("")
      .Kind(FolderValue())
      .Required();
  command.AddOption("NAME", arguments->name, "Name of the file; *, ? and [...] are wildcards")
      .TypeName("")
      .Required();
  command.Footer("Example:\n  ravelin files find product scene_mtl.txt");
  command.OnRun([arguments] { Find(*arguments); });
  return command;
}

}  // namespace

void AddFilesCommand(CommandEntry& program) {
  const auto arguments = std::make_shared<ListArguments>();
  ListingRequest& request = arguments->request;
  CommandEntry command = program.AddCommand("files", "List the files of a folder or look one up");
  CommandEntry find = AddFind(command);
  OptionEntry folder = command.AddOption("FOLDER", request.folder, "Folder to list")
                           .TypeName("")
                           .Kind(FolderValue());
  OptionEntry mask =
      command.AddOption("--mask", request.mask, "List what matches, letter case ignored")
          .TypeName("MASK");
  OptionEntry recursive =
      command.AddFlag("--recursive", request.recursive, "List the folders below, too");
  OptionEntry json = command.AddFlag("--json", arguments->json, "Print JSON instead of text");
  for (const OptionEntry& option : {folder, mask, recursive, json}) find.Exclude(option);
  command.Footer("Example:\n  ravelin files product --recursive --mask '*.imd'");
  command.OnRun([find, folder, mask, arguments] {
    if (find.IsGiven()) return;
    if (!folder.IsGiven()) throw UsageError("FOLDER is required");
    arguments->request.hasMask = mask.IsGiven();
    List(*arguments);
  });
}

}  // namespace ravelin
