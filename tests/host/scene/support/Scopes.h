// Labels sorted for a test.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/scene/SceneKeys.h"
#include "host/xml/XmlConversion.h"

/// A label in the dialect of NASA, converted, read back and sorted.
class SortedLabel {
 public:
  explicit SortedLabel(const std::string& text,
                       const std::vector<ravelin::KeyMapping>& mappings = {})
      : groups_(ravelin::ReadLabelValues(ravelin::NasaPvlXml(text, "x.lbl"), "x.lbl")),
        scopes_(ravelin::SortLabel(groups_, mappings, "x.lbl")) {}

  const ravelin::LabelScopes& operator*() const { return scopes_; }
  const ravelin::LabelScopes* operator->() const { return &scopes_; }

 private:
  std::vector<ravelin::LabelGroup> groups_;
  ravelin::LabelScopes scopes_;
};
