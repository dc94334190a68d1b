// A program that supplies the symbol CreateFromXML itself, ahead of the module in the order in
// which the loader looks: the module's own function then calls this one.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "SatCommonUtils/Metadata.h"

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

}  // namespace SatCommonUtils

namespace {

using Function = TransformReference (*)(TKvXIniReader*, std::string);

/// The file that an address was loaded from.
std::string FileOf(void* address) {
  Dl_info info{};
  return ::dladdr(address, &info) != 0 ? info.dli_fname : "";
}

/// Calls the module's own function while the program supplies `supplied`.
class CreateFromXmlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    module_ = ::dlopen(RAVELIN_MODULE_FILE, RTLD_NOW);
    ASSERT_NE(module_, nullptr) << ::dlerror();
    void* program = ::dlopen(nullptr, RTLD_NOW);
    void* own = ::dlsym(program, SymbolName().c_str());
    void* modules = ::dlsym(module_, SymbolName().c_str());
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

 private:
  static std::string SymbolName() {
    Dl_info info{};
    ::dladdr(reinterpret_cast<void*>(&SatCommonUtils::CreateFromXML), &info);
    return info.dli_sname != nullptr ? info.dli_sname : "";
  }

  void* module_ = nullptr;
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

}  // namespace
