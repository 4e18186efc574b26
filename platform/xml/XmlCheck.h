// Holds a text to what XML 1.0 and its namespaces ask of one, for a parser that reads on over such faults: what is
// refused on one system has to be refused on the other. No document type is let through.
#pragma once

#include <string>

namespace qx {

// Takes UTF-8, with or without a mark. Raises Exception with the first fault and its line. How deep elements may
// lie in each other is bounded (256), as the parsers bound it that this one stands beside.
void CheckXml(const std::string& text);

}  // namespace qx
