// avqdata/xml_text.h - an XML text as a flat list of its elements, for the plans that people save.
//
// Lenient: a text that ends in the middle gives what came before, a closing tag without its opening
// one is passed over, a name loses its prefix. No declarations of entities are followed. Elements
// point into the text, which must outlive them; at most 100,000 are kept, 64 deep.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace avqdata {

struct XmlElement {
    std::string_view name;
    std::string_view tag;  // what stands between < and >, for the attributes
    std::string text;      // the element's own, decoded, blanks at both ends cut
    std::size_t line = 1;  // where the tag begins, from 1
    std::size_t end = 0;   // the place in the list behind the last element inside this one
};

struct XmlText {
    std::vector<XmlElement> elements;  // in the order of their tags
    bool isCut = false;                // ends too early, or holds more than is kept

    // The places of an element's children of this name. `parent` is a place in the list.
    std::vector<std::size_t> Children(std::size_t parent, std::string_view name) const;
    // Down a path of names, each the first child: "Header/CruisingAlt". Null without one.
    const XmlElement* Find(std::size_t parent, std::string_view path) const;
    std::string_view Text(std::size_t parent, std::string_view path) const;  // empty without one
    // The first element of this name anywhere; elements.size() without one.
    std::size_t First(std::string_view name) const;
};

XmlText ParseXml(std::string_view text);

// Decoded; empty where the element has no such attribute.
std::string Attribute(const XmlElement& element, std::string_view name);

}  // namespace avqdata
