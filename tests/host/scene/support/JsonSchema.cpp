#include "host/scene/support/JsonSchema.h"

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

namespace {

using Json = nlohmann::json;

const std::set<std::string> kKnown = {
    "type",  "enum",     "properties", "required", "additionalProperties",
    "items", "minItems", "maxItems",   "minimum",  "$ref",
    "$defs", "$schema",  "title"};

bool HasType(const Json& value, const std::string& type) {
  if (type == "object") return value.is_object();
  if (type == "array") return value.is_array();
  if (type == "string") return value.is_string();
  if (type == "boolean") return value.is_boolean();
  if (type == "integer") return value.is_number_integer();
  if (type == "number") return value.is_number();
  if (type == "null") return value.is_null();
  throw std::logic_error("unknown type " + type);
}

class Checker {
 public:
  explicit Checker(const Json& root) : root_(root) {}

  std::string Fault(const Json& value, const Json& schema, const std::string& place) const {
    for (const auto& [keyword, argument] : schema.items()) {
      if (!kKnown.contains(keyword)) throw std::logic_error("unknown keyword " + keyword);
    }
    if (schema.contains("$ref")) return Fault(value, Target(schema["$ref"]), place);
    if (!TypeFits(value, schema)) return place + " has another type: " + value.dump();
    if (schema.contains("enum") && !Contains(schema["enum"], value)) {
      return place + " is none of the values: " + value.dump();
    }
    if (schema.contains("minimum") && value < schema["minimum"]) return place + " is too small";
    if (value.is_object()) return ObjectFault(value, schema, place);
    return value.is_array() ? ArrayFault(value, schema, place) : "";
  }

 private:
  const Json& Target(const std::string& reference) const {
    return root_.at(Json::json_pointer(reference.substr(1)));
  }

  static bool Contains(const Json& list, const Json& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
  }

  static bool TypeFits(const Json& value, const Json& schema) {
    if (!schema.contains("type")) return true;
    const Json& type = schema["type"];
    if (type.is_string()) return HasType(value, type);
    return std::any_of(type.begin(), type.end(),
                       [&](const Json& one) { return HasType(value, one); });
  }

  std::string ObjectFault(const Json& value, const Json& schema, const std::string& place) const {
    for (const Json& name : schema.value("required", Json::array())) {
      if (!value.contains(name)) return place + " has no " + name.get<std::string>();
    }
    const Json properties = schema.value("properties", Json::object());
    for (const auto& [name, member] : value.items()) {
      if (!properties.contains(name)) return place + " has a member more: " + name;
      const std::string fault = Fault(member, properties[name], place + "/" + name);
      if (!fault.empty()) return fault;
    }
    return "";
  }

  std::string ArrayFault(const Json& value, const Json& schema, const std::string& place) const {
    if (value.size() < schema.value("minItems", 0u)) return place + " is too short";
    if (value.size() > schema.value("maxItems", 1000000u)) return place + " is too long";
    for (std::size_t i = 0; i < value.size(); ++i) {
      const std::string fault = Fault(value[i], schema["items"], place + "/" + std::to_string(i));
      if (!fault.empty()) return fault;
    }
    return "";
  }

  const Json& root_;
};

}  // namespace

std::string SchemaFault(const Json& value, const Json& schema) {
  return Checker(schema).Fault(value, schema, "#");
}
