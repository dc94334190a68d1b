// A program that supplies symbols of the module's itself, ahead of the module in the order in which
// the loader looks. The module's own CreateFromXML then calls the one supplied; SaveToXML does
// without the SaveToXMLE supplied.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <functional>
#include <new>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "metadata/RecordingWriter.h"

namespace {

using TransformReference = var_a_legacy::var_a<TKv2DTransform*>;
using Creator = std::function<TransformReference(TKvXIniReader*, std::string)>;

Creator& Supplied() {
  static Creator creator;
  return creator;
}

}  // namespace

namespace SatCommonUtils {

TransformReference CreateFromXML(TKvXIniReader* reader, std::string section) {
  return Supplied()(reader, std::move(section));
}

bool SaveToXMLE(const TKv2DTransform&, TKvXIniWriter*, std::string) {
  throw TKvError("the program's own was called");
}

}  // namespace SatCommonUtils

namespace {

using Function = TransformReference (*)(TKvXIniReader*, std::string);

/// The file that an address was loaded from.
std::string FileOf(void* address) {
  Dl_info info{};
  return ::dladdr(address, &info) != 0 ? info.dli_fname : "";
}

/// The symbol of an exported function.
std::string SymbolOf(void* function) {
  Dl_info info{};
  ::dladdr(function, &info);
  return info.dli_sname != nullptr ? info.dli_sname : "";
}

/// Calls the module's own function while the program supplies `supplied`.
class CreateFromXmlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    module_ = ::dlopen(RAVELIN_MODULE_FILE, RTLD_NOW);
    ASSERT_NE(module_, nullptr) << ::dlerror();
    void* program = ::dlopen(nullptr, RTLD_NOW);
    const std::string symbol = SymbolOf(reinterpret_cast<void*>(&SatCommonUtils::CreateFromXML));
    void* own = ::dlsym(program, symbol.c_str());
    void* modules = ::dlsym(module_, symbol.c_str());
    ::dlclose(program);
    ASSERT_NE(modules, nullptr);
    ASSERT_NE(modules, own) << "the program's comes first";
    ASSERT_NE(FileOf(modules), FileOf(own));
    create_ = reinterpret_cast<Function>(modules);
  }
  void TearDown() override {
    Supplied() = nullptr;
    if (module_ != nullptr) ::dlclose(module_);
  }

  TransformReference Create(TKvXIniReader* reader, const std::string& section,
                            const Creator& supplied) {
    Supplied() = [&, supplied](TKvXIniReader* given, std::string name) {
      ++calls_;
      return supplied(given, std::move(name));
    };
    return create_(reader, section);
  }

  int calls_ = 0;
  void* module_ = nullptr;

 private:
  Function create_ = nullptr;
};

TKvXIniReader EmptyDocument() {
  return TKvXIniReader(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream("<xini/>")));
}

TEST_F(CreateFromXmlTest, ItReachesTheSuppliedSymbolOnce) {
  Create(nullptr, "s", [](TKvXIniReader*, const std::string&) { return TransformReference(); });
  EXPECT_EQ(calls_, 1);
}

TEST_F(CreateFromXmlTest, ItPassesOnTheReaderAndTheSection) {
  TKvXIniReader reader = EmptyDocument();
  const std::string section = "a section whose name needs memory of its own, with \xFC";
  Create(&reader, section, [&](TKvXIniReader* given, const std::string& name) {
    EXPECT_EQ(given, &reader);
    EXPECT_EQ(name, section);
    return TransformReference();
  });
  EXPECT_EQ(calls_, 1);
}

TEST_F(CreateFromXmlTest, ItReturnsWhatTheSuppliedOneReturns) {
  const TransformReference transform(new TKv2DTransform(1, 2, 3, 4, 5, 6));
  const TransformReference created =
      Create(nullptr, "s", [&](TKvXIniReader*, const std::string&) { return transform; });
  EXPECT_EQ(created, transform);
  EXPECT_EQ(transform.use_count(), 2);
}

TEST_F(CreateFromXmlTest, ItReturnsAnEmptyReferenceThatTheSuppliedOneReturns) {
  EXPECT_FALSE(Create(nullptr, "s",
                      [](TKvXIniReader*, const std::string&) { return TransformReference(); }));
}

TEST_F(CreateFromXmlTest, AnErrorThatIsThrownGivesAnEmptyReference) {
  EXPECT_FALSE(Create(nullptr, "s", [](TKvXIniReader*, const std::string&) -> TransformReference {
    throw TKvError("no such section");
  }));
  EXPECT_EQ(calls_, 1);
}

TEST_F(CreateFromXmlTest, WhateverIsThrownGivesAnEmptyReference) {
  EXPECT_FALSE(Create(nullptr, "s",
                      [](TKvXIniReader*, const std::string&) -> TransformReference { throw 1; }));
  EXPECT_FALSE(Create(nullptr, "s", [](TKvXIniReader*, const std::string&) -> TransformReference {
    throw std::bad_alloc();
  }));
  EXPECT_EQ(calls_, 2);
}

TEST_F(CreateFromXmlTest, ItReadsNothingOfTheReaderItself) {
  TKvXIniReader reader = EmptyDocument();
  const TransformReference created = Create(
      &reader, "missing",
      [](TKvXIniReader*, const std::string&) { return TransformReference(new TKv2DTransform); });
  EXPECT_TRUE(created) << "a missing section is for the supplied function to find";
}

using Saver = bool (*)(const TKv2DTransform&, TKvXIniWriter*, std::string);

/// The symbol of SaveToXML, which this program does not supply.
std::string SymbolOfSaveToXml() {
  std::string symbol = SymbolOf(reinterpret_cast<void*>(&SatCommonUtils::SaveToXMLE));
  const std::string supplied = "10SaveToXMLE";
  return symbol.replace(symbol.find(supplied), supplied.size(), "9SaveToXML");
}

TEST_F(CreateFromXmlTest, SavingWithoutExceptionsTakesItsStepsItself) {
  const auto save = reinterpret_cast<Saver>(::dlsym(module_, SymbolOfSaveToXml().c_str()));
  ASSERT_NE(save, nullptr);
  metadata_test::RecordingWriter writer;
  EXPECT_TRUE(save(TKv2DTransform(1, 2, 3, 4, 5, 6), &writer, "s"));
  EXPECT_THAT(writer.calls, ::testing::ElementsAre("begin s", "a=1", "b=2", "c=3", "d=4", "e=5",
                                                   "f=6", "end 4711"));
}

}  // namespace
