#include "Kv/XIni.h"
#include "xini/NumberText.h"

TKvXIniWriter::TKvXIniWriter() = default;

TKvXIniWriter::~TKvXIniWriter() = default;

template <>
bool TKvXIniWriter::WriteS<std::string>(const std::string& name, const std::string& value) {
  return WriteItemText(name, value);
}

template <>
bool TKvXIniWriter::WriteS<int>(const std::string& name, const int& value) {
  return WriteItemText(name, kv::NumberText(value).View());
}

template <>
bool TKvXIniWriter::WriteS<double>(const std::string& name, const double& value) {
  return WriteItemText(name, kv::NumberText(value).View());
}

unsigned long TKvXIniWriter::BeginSectionS(const std::string& name) {
  return OpenSection(name, /*compact=*/false);
}

unsigned long TKvXIniWriter::BeginSectionSE(const std::string& name) {
  return OpenSectionE(name, /*compact=*/false);
}

unsigned long TKvXIniWriter::BeginSectionCompactSE(const std::string& name) {
  return OpenSectionE(name, /*compact=*/true);
}

unsigned long TKvXIniWriter::OpenSectionE(const std::string& name, bool compact) {
  const unsigned long section = OpenSection(name, compact);
  if (section != 0) return section;
  ReportWriteError();
  throw TKvError("XML-ini: the section could not be opened");
}

bool TKvXIniWriter::EndSection(unsigned long) {
  return false;
}

void TKvXIniWriter::SetAttributeMode(bool) {}

void TKvXIniWriter::ReportWriteError() {
  throw TKvError("XML-ini: a write failed");
}

bool TKvXIniWriter::WriteItemText(const std::string&, std::string_view) {
  return false;
}

unsigned long TKvXIniWriter::OpenSection(const std::string&, bool) {
  return 0;
}
