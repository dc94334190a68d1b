// Checking JSON by a JSON schema.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

/// What is wrong with a value by a schema, with the place; empty when nothing is. Knows the
/// keywords type, enum, properties, required, additionalProperties (false), items, minItems,
/// maxItems, minimum, $ref to #/$defs/NAME; throws std::logic_error for others but titles.
std::string SchemaFault(const nlohmann::json& value, const nlohmann::json& schema);
