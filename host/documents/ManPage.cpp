#include "host/documents/ManPage.h"

#include <cctype>

#include "host/ExitCode.h"

namespace ravelin {
namespace {

struct Description {
  const char* name;
  const char* text;
};

constexpr const char* kAbout =
    "ravelin reads headerless 16-bit band files, one file a band, and scenes delivered as grids of "
    "super tiles, with the labels and coordinate systems beside them. It makes pictures, rasters, "
    "XML, footprints and a log of them. Every job is a command of its own; ravelin scene does all "
    "of them for a product folder.";

constexpr const char* kWriting =
    "A file that is there already is replaced only when the new one is complete, and not at all "
    "when the work fails or is interrupted.";

constexpr const char* kFailing =
    "A failure is one line on standard error: ravelin, the file or option that it is about, what "
    "is wrong and what to do. A run that a signal ends ends by that signal.";

constexpr Description kFiles[] = {
    {"*.raw", "Band: unsigned 16-bit samples, row by row from the top, without a header."},
    {"*.txt, *.lbl, *.pvl, *.met", "Label of a product in PVL."},
    {"*.bip, *.hdr", "Pixels as they are, all bands, and their ENVI header."},
    {"*.png", "Picture."},
    {"*.xml", "Metadata, coordinate systems and trees as XML-ini."},
    {"*.shp, *.shx, *.dbf, *.prj", "Shapefile of one polygon and its companions."},
    {"ravelin.log", "What ravelin scene read, decided, skipped and wrote, in its output folder."},
    {".ravelin-*.tmp", "File on its way, in the folder of its final place; gone at the end."},
};

constexpr Description kSeeAlso[] = {
    {"gdalinfo", "1"}, {"gdal_translate", "1"}, {"ogrinfo", "1"}, {"xmllint", "1"}};

std::string Bold(const std::string& text) {
  return "\\fB" + RoffText(text) + "\\fR";
}

std::string Italic(const std::string& text) {
  return "\\fI" + RoffText(text) + "\\fR";
}

std::string Section(const std::string& title) {
  return ".SH " + RoffText(title) + "\n";
}

std::string Paragraph(const std::string& text) {
  return ".PP\n" + RoffText(text) + "\n";
}

std::string Item(const std::string& label, const std::string& text) {
  return ".TP\n" + label + "\n" + text + "\n";
}

std::string ValueOf(const DocumentedOption& option) {
  return Italic(option.value) + (option.many ? " ..." : "");
}

std::string LabelOf(const DocumentedOption& option) {
  std::string label;
  for (const std::string& name : option.names) label += (label.empty() ? "" : ", ") + Bold(name);
  if (option.IsFlag()) return label;
  return label + (label.empty() ? "" : " ") + ValueOf(option);
}

std::string TextOf(const DocumentedOption& option) {
  std::string text = option.description;
  if (!option.defaultValue.empty()) text += " (default: " + option.defaultValue + ")";
  if (option.required && !option.names.empty()) text += " (required)";
  return RoffText(text);
}

/// Help is an option of every command; it is described once.
bool IsHelp(const DocumentedOption& option) {
  return option.names.back() == "--help";
}

std::string Usage(const DocumentedCommand& command) {
  std::string usage = Bold(command.path);
  if (!command.commands.empty()) usage += " " + Italic("COMMAND");
  for (const DocumentedOption& value : command.values) {
    usage += " " + (value.required ? ValueOf(value) : "[" + ValueOf(value) + "]");
  }
  bool more = false;
  for (const DocumentedOption& option : command.options) {
    if (option.required) usage += " " + Bold(option.names.front()) + " " + ValueOf(option);
    more = more || (!option.required && !IsHelp(option));
  }
  return usage + (more ? " [" + Italic("options") + "]" : "");
}

std::string OptionItems(const DocumentedCommand& command) {
  std::string items;
  for (const DocumentedOption& value : command.values) items += Item(LabelOf(value), TextOf(value));
  for (const DocumentedOption& option : command.options) {
    if (!IsHelp(option)) items += Item(LabelOf(option), TextOf(option));
  }
  return items;
}

std::string CommandText(const DocumentedCommand& command) {
  std::string text = ".SS " + RoffText(command.path) + "\n" + RoffText(command.description) + ".\n";
  const bool runs = command.commands.empty() || !command.values.empty();
  if (runs) text += ".PP\n" + Usage(command) + "\n" + OptionItems(command);
  for (const std::string& remark : command.remarks) text += Paragraph(remark);
  return text;
}

std::string Commands(const DocumentedCommand& program) {
  std::string text = Section("COMMANDS");
  for (const DocumentedCommand* command : AllCommands(program)) {
    if (command != &program) text += CommandText(*command);
  }
  return text;
}

std::string Options(const DocumentedCommand& program) {
  std::string text = Section("OPTIONS");
  for (const DocumentedOption& option : program.options) {
    const char* more = IsHelp(option) ? "; with a command, its help" : "";
    text += Item(LabelOf(option), RoffText(option.description + more) + ".");
  }
  return text;
}

std::string ExitStatus() {
  std::string text = Section("EXIT STATUS");
  for (const ExitCodeMeaning& code : kExitCodes) {
    std::string meaning = code.meaning;
    meaning[0] = static_cast<char>(std::toupper(meaning[0]));
    text += Item(Bold(std::to_string(code.code)), RoffText(meaning + "."));
  }
  return text + Paragraph(kFailing);
}

std::string Files() {
  std::string text = Section("FILES");
  for (const Description& file : kFiles) text += Item(Italic(file.name), RoffText(file.text));
  return text;
}

std::string Examples(const DocumentedCommand& program) {
  std::string text = Section("EXAMPLES");
  for (const DocumentedCommand* command : AllCommands(program)) {
    if (command == &program) continue;
    text += Paragraph(command->description + ":") + ".RS 4\n.nf\n";
    for (const std::string& line : command->examples) text += RoffText(line) + "\n";
    text += ".fi\n.RE\n";
  }
  return text;
}

std::string SeeAlso() {
  std::string text = Section("SEE ALSO");
  for (const Description& page : kSeeAlso) {
    text += ".BR " + RoffText(page.name) + " (" + page.text + ")";
    text += &page == std::end(kSeeAlso) - 1 ? "\n" : ",\n";
  }
  return text;
}

/// "Opens it." as what stands behind a name: "opens it".
std::string Purpose(std::string description) {
  description[0] = static_cast<char>(std::tolower(description[0]));
  if (description.back() == '.') description.pop_back();
  return description;
}

}  // namespace

std::string RoffText(const std::string& text) {
  // What stands at the beginning of a line must not be taken for a request.
  std::string roff = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
  for (const char c : text) {
    switch (c) {
      case '\\':
        roff += "\\e";
        break;
      case '-':
        roff += "\\-";
        break;
      case '\'':
        roff += "\\(aq";
        break;
      case '"':
        roff += "\\(dq";
        break;
      case '`':
        roff += "\\(ga";
        break;
      case '^':
        roff += "\\(ha";
        break;
      case '~':
        roff += "\\(ti";
        break;
      default:
        roff += c;
    }
  }
  return roff;
}

std::string ManPage(const DocumentedCommand& program, const std::string& version) {
  std::string page = ".\\\" Made of the option table of the command.\n";
  page += R"(.TH RAVELIN 1 "" ")" + RoffText(program.path + " " + version) + R"(" "User Commands")";
  page += "\n";
  page += ".nh\n.ad l\n";
  page += Section("NAME") + program.path + " \\- " + RoffText(Purpose(program.description)) + "\n";
  page += Section("SYNOPSIS") + Bold(program.path) + " " + Italic("COMMAND") + " [" +
          Italic("options") + "]\n";
  page += Section("DESCRIPTION") + RoffText(kAbout) + "\n" + Paragraph(kWriting);
  page += Commands(program) + Options(program) + ExitStatus() + Files() + Examples(program);
  return page + SeeAlso();
}

}  // namespace ravelin
