// Data trees from and to the two forms that files hold.
#pragma once

#include <string>

#include "SatCommonUtils/Tree.h"

namespace ravelin {

/// Whether a text begins as a tree in text form does; XML does not.
bool IsTreeText(const std::string& text);

/// Reads a tree from a text that was read from `file`. Throws HostError with the line at which it
/// is not in the form of such texts.
void ReadTreeText(const std::string& text, const std::string& file,
                  SatCommonUtils::TStringTree* tree);

/// Reads the tree that a section of an XML-ini document holds; the root for an empty name. Throws
/// HostError for what is no such document, has no such section or holds no whole tree there, with
/// the place.
void ReadTreeXml(const std::string& xml, const std::string& section, const std::string& file,
                 SatCommonUtils::TStringTree* tree);

/// The tree as text, as it will be read back. Throws HostError, naming `file` and the place, for a
/// tree that the text form cannot carry.
std::string TreeText(const SatCommonUtils::TStringTree& tree, const std::string& file);

/// A document whose section of that name holds the tree; the root for an empty name.
std::string TreeXml(const SatCommonUtils::TStringTree& tree, const std::string& section);

}  // namespace ravelin
