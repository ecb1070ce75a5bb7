#include <nlohmann/json.hpp>

#include "avqdata/airspace.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

using nlohmann::json;

const json* Member(const json& object, const char* name) {
    if (!object.is_object()) {
        return nullptr;
    }
    const auto found = object.find(name);
    return found != object.end() ? &*found : nullptr;
}

// The first of the names that is a text.
std::string Text(const json& object, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        const json* member = Member(object, name);
        if (member != nullptr && member->is_string() &&
            !member->get_ref<const std::string&>().empty()) {
            return member->get_ref<const std::string&>();
        }
    }
    return {};
}

struct GeoReader {
    const std::string& name;
    Report& report;
    std::size_t feature = 0;
    std::vector<AirspaceOutline> outlines;
};

void AddFault(GeoReader& reader, const char* text) {
    reader.report.Add(Topic::Fault, "features that make no sense",
                      reader.name + ": feature " + std::to_string(reader.feature) + " " + text);
}

// A ring of [longitude, latitude] pairs.
bool ReadRing(const json& ring, std::vector<LatLon>& points) {
    if (!ring.is_array()) {
        return false;
    }
    for (const json& pair : ring) {
        if (!pair.is_array() || pair.size() < 2 || !pair[0].is_number() || !pair[1].is_number()) {
            return false;
        }
        const LatLon at{pair[1].get<double>(), pair[0].get<double>()};
        if (!IsPosition(at)) {
            return false;
        }
        points.push_back(at);
    }
    return true;
}

void AddPolygon(GeoReader& reader, const json& rings, AirspaceOutline outline) {
    if (!rings.is_array() || rings.empty() || !ReadRing(rings[0], outline.points)) {
        AddFault(reader, "has no ring of positions");
        return;
    }
    if (rings.size() > 1) {
        reader.report.AddCount(Topic::Dropped, "holes in airspaces", rings.size() - 1);
    }
    reader.outlines.push_back(std::move(outline));
}

// A class in words, or as the number that openAIP has for a type or, without one, for a class.
std::string ClassText(const json& properties) {
    const std::string text =
        Text(properties, {"LOCAL_TYPE", "type", "class", "TYPE_CODE", "CLASS"});
    const auto number = [&](const char* name) {
        const json* member = Member(properties, name);
        return member != nullptr && member->is_number_integer() ? member->get<int>() : -1;
    };
    constexpr int kClassLetters = 7;
    const int letter = number("icaoClass");
    if (!text.empty()) {
        return AirspaceClass(text);
    }
    if (number("type") > 0) {
        return AirspaceClass(std::to_string(number("type")));
    }
    return AirspaceClass(letter >= 0 && letter < kClassLetters
                             ? std::string(1, static_cast<char>('A' + letter))
                             : std::string());
}

// Collections of flight information regions have no more than an `id`, with the code of one.
void Name(const json& feature, const json& properties, AirspaceOutline& outline) {
    outline.airspaceClass = ClassText(properties);
    outline.ident = Text(properties, {"identifier", "IDENT", "ident"});
    outline.label = outline.ident;
    const std::string name = Text(properties, {"name", "NAME"});
    const bool hasCode = !outline.ident.empty() || !name.empty();
    if (outline.ident.empty()) {
        outline.label = name;
        outline.ident = HasShelves(outline.airspaceClass) ? NameOfShelf(name) : name;
    }
    if (!hasCode) {
        const std::string id = Text(properties, {"id", "ID", "icao", "ICAO"});
        outline.ident = outline.label = id.empty() ? Text(feature, {"id"}) : id;
        if (outline.airspaceClass == "OTHER" && IsIcaoCode(outline.ident.substr(0, 4))) {
            outline.airspaceClass = "FIR";
        }
    }
}

void ReadFeature(GeoReader& reader, const json& feature) {
    const json* geometry = Member(feature, "geometry");
    const json* properties = Member(feature, "properties");
    const json* coordinates = geometry != nullptr ? Member(*geometry, "coordinates") : nullptr;
    if (coordinates == nullptr || properties == nullptr) {
        AddFault(reader, "has no geometry or properties");
        return;
    }
    AirspaceOutline outline;
    Name(feature, *properties, outline);
    const std::string type = Text(*geometry, {"type"});
    if (type == "Polygon") {
        AddPolygon(reader, *coordinates, std::move(outline));
    } else if (type == "MultiPolygon" && coordinates->is_array()) {
        for (const json& polygon : *coordinates) {
            AddPolygon(reader, polygon, outline);
        }
    } else {
        reader.report.Add(Topic::Dropped, "features that are no areas");
    }
}

}  // namespace

bool ReadGeoJson(std::string_view text, const std::string& name, const ImportContext& context,
                 Dataset& data, std::string& error) {
    const json document = json::parse(text, nullptr, false);
    if (document.is_discarded()) {
        error = name + ": is no JSON";
        return false;
    }
    const json* features = Member(document, "features");
    if (features == nullptr || !features->is_array()) {
        error = name + ": is no GeoJSON feature collection";
        return false;
    }
    GeoReader reader{name, context.report, 0, {}};
    for (const json& feature : *features) {
        ++reader.feature;
        ReadFeature(reader, feature);
    }
    AddOutlines(std::move(reader.outlines), context, data);
    return true;
}

}  // namespace avqdata
