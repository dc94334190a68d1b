#include "SatCommonUtils/Metadata.h"

namespace SatCommonUtils {

using TTransform = var_a_legacy::var_a<TKv2DTransform*>;

TTransform CreateFromXMLE(TKvXIniReader* reader, std::string section) {
  const unsigned long entered = reader->EnterSectionSE(section);
  TTransform transform = TKv2DTransform::LoadE(reader);
  reader->LeaveSection(entered);
  return transform;
}

namespace {

/// Calls the exported symbol CreateFromXML. The compiler may bind a function's call of itself to
/// the function; the address that the loader found for the symbol is not known to it.
TTransform CallExportedCreateFromXML(TKvXIniReader* reader, const std::string& section) {
  using TFunction = TTransform (*)(TKvXIniReader*, std::string);
  static TFunction volatile const exported = &CreateFromXML;
  return exported(reader, section);
}

}  // namespace

TTransform CreateFromXML(TKvXIniReader* reader, std::string section) {
  try {
    return CallExportedCreateFromXML(reader, section);
  } catch (...) {
    return nullptr;
  }
}

namespace {

/// The result of ending the section.
bool SaveSection(const TKv2DTransform& transform, TKvXIniWriter* writer,
                 const std::string& section) {
  const unsigned long opened = writer->BeginSectionSE(section);
  transform.SaveE(writer);
  return writer->EndSection(opened);
}

}  // namespace

bool SaveToXMLE(const TKv2DTransform& transform, TKvXIniWriter* writer, std::string section) {
  return SaveSection(transform, writer, section);
}

// Not by SaveToXMLE: another module may supply that symbol.
bool SaveToXML(const TKv2DTransform& transform, TKvXIniWriter* writer, std::string section) {
  try {
    SaveSection(transform, writer, section);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace SatCommonUtils
