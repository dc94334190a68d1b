#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

#include "SatCommonUtils/Tree.h"
#include "tree/EscapedText.h"
#include "tree/TextCursor.h"
#include "tree/TextSink.h"

namespace SatCommonUtils {
namespace {

/// The bytes of a value: up to the next tab, line feed or end.
std::size_t CountValue(const char* text) {
  std::size_t length = 0;
  while (text[length] != '\t' && text[length] != '\n' && text[length] != '\0') ++length;
  return length;
}

/// "(tag,idx)[count]" as far as it is there.
void ScanPrefix(TTextCursor scan, int* tag, int* idx, std::size_t* count) {
  scan.SkipIf('(') && scan.Scan(tag) && scan.SkipIf(',') && scan.Scan(idx) && scan.SkipIf(')') &&
      scan.SkipIf('[') && scan.Scan(count);
}

}  // namespace

template <class T>
TDataField<T>::TDataField(int tag, int idx, T* values, std::size_t count, std::string header)
    : tag(tag), idx(idx), header(std::move(header)) {
  if (count == 0) return;
  std::unique_ptr<T[]> copies(new T[count]);
  std::copy_n(values, count, copies.get());
  this->values = copies.release();
  this->count = count;
}

template <class T>
TDataField<T>::TDataField(int tag, int idx, const T& value, std::string header)
    : tag(tag), idx(idx), header(std::move(header)) {
  std::unique_ptr<T[]> copy(new T[1]);
  copy[0] = value;
  values = copy.release();
  count = 1;
}

template <class T>
TDataField<T>::~TDataField() {
  delete[] values;
}

template <class T>
void TDataField<T>::Allocate(std::size_t size) {
  T* const fresh = size == 0 ? nullptr : new T[size];
  delete[] std::exchange(values, fresh);
  count = size;
}

template <class T>
std::size_t TDataField<T>::WriteToString(char* buffer, std::size_t position,
                                         std::size_t depth) const {
  if (tag < 0 || idx < 0) return 0;
  TTextSink sink(buffer, position);
  sink.PutTabs(depth);
  sink.Put('(');
  sink.PutNumber(tag);
  sink.Put(',');
  sink.PutNumber(idx);
  sink.Put(')');
  sink.Put('[');
  sink.PutNumber(count);
  sink.Put(']');
  PutEncoded(header, &sink);
  for (std::size_t i = 0; i < count; ++i) {
    sink.Put('\t');
    sink.Skip(ValueToString(i, buffer, sink.Position()));
  }
  sink.Put('\n');
  return sink.Position() - position;
}

template <class T>
bool TDataField<T>::WriteToXML(TKvXIniWriter* writer) const {
  if (tag < 0 || idx < 0) return true;
  try {
    if (!writer->WriteS<int>("tag", tag)) writer->ReportWriteError();
    if (!writer->WriteS<int>("idx", idx)) writer->ReportWriteError();
    if (!writer->WriteS<std::string>("hdr", header)) writer->ReportWriteError();
    const std::size_t section = writer->BeginSectionCompactSE("data");
    for (std::size_t i = 0; i < count; ++i) {
      if (!writer->WriteS<std::string>("", ValueToString(i))) writer->ReportWriteError();
    }
    writer->EndSection(section);
    return true;
  } catch (...) {
    return false;
  }
}

template <class T>
std::size_t TDataField<T>::ValueToString(std::size_t /*i*/, char* /*buffer*/,
                                         std::size_t /*position*/) const {
  return 0;
}

template <class T>
std::string TDataField<T>::ValueToString(std::size_t /*i*/) const {
  return {};
}

template <class T>
bool TDataField<T>::StringToValue(const char* /*text*/, std::size_t /*length*/, std::size_t /*i*/) {
  return false;
}

template <class T>
bool TDataField<T>::StringToValue(const std::string& /*text*/, std::size_t /*i*/) {
  return false;
}

template <class T>
void TDataField<T>::ReadFromString(const char* text, std::size_t* position) {
  TTextCursor cursor(text + *position);
  std::size_t size = count;
  ScanPrefix(cursor, &tag, &idx, &size);
  cursor.SkipPast(']');
  const std::size_t length = cursor.CountUntil('\t');
  DecodeTo(cursor.At(), length, &header);
  cursor.Skip(length);
  cursor.SkipIf('\t');
  if (size > 1 && !cursor.HasLeft(size - 1)) {
    throw std::length_error("a field's text is too short for its count of values");
  }
  Allocate(size);
  for (std::size_t i = 0;; ++i) {
    const std::size_t run = CountValue(cursor.At());
    if (i < count) StringToValue(cursor.At(), run, i);
    cursor.Skip(run);
    if (!cursor.SkipIf('\t')) break;
  }
  cursor.SkipIf('\n');
  *position = static_cast<std::size_t>(cursor.At() - text);
}

template <class T>
bool TDataField<T>::ReadFromXML(TKvXIniReader* reader, std::size_t /*item*/) {
  try {
    tag = reader->ReadE<int>(reader->FindFE("tag", 0));
    idx = reader->ReadE<int>(reader->FindFE("idx", 0));
    header = reader->ReadE<std::string>(reader->FindFE("hdr", 0));
    const std::size_t section = reader->EnterSectionSE("data");
    Allocate(reader->GetItemCount());
    for (std::size_t i = 0; i < count; ++i) StringToValue(reader->ReadE<std::string>(i), i);
    reader->LeaveSection(section);
    return true;
  } catch (...) {
    return false;
  }
}

template class TDataField<std::string>;

}  // namespace SatCommonUtils
