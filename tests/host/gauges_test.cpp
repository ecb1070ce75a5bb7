// Where every gauge has its surface, icons and keys, compared with how it was when somebody last
// looked: panels and the painted bezels rest on these places. After a change that is meant,
// AVQ1_RENEW_PICTURES=1 build/asan/test_host writes gauges.txt anew; look at the difference.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "host/gauge_table.h"
#include "support/kept_file.h"

namespace avq1 {
namespace {

std::string BoxText(const PixelBox& box) {
    return std::to_string(box.x) + ',' + std::to_string(box.y) + ' ' + std::to_string(box.width) +
           'x' + std::to_string(box.height);
}

// One line: a label may be of two.
std::string Label(std::string label) {
    for (char& character : label) {
        character = character == '\n' ? '/' : character;
    }
    return label;
}

void WriteKeys(const KeyTable& keys, std::ostream& out) {
    for (std::size_t i = 0; i < keys.rows.size(); ++i) {
        const KeyArea& key = keys.rows[i];
        const MouseRectangle& area = keys.rectangles[3 * i];
        const MouseRectangle& click = keys.rectangles[3 * i + 1];
        out << "  " << BoxText(area.box) << " \"" << Label(key.label) << "\" code " << key.code
            << " flags " << std::hex << click.mouseFlags << std::dec << " cursor "
            << static_cast<int>(click.cursor) << " art " << static_cast<int>(key.art)
            << (click.function == nullptr || key.action == nullptr ? " dead\n" : "\n");
    }
}

std::string Gauges() {
    std::ostringstream out;
    for (const GaugeRow& gauge : GaugeTable()) {
        out << "# " << gauge.name << ' ' << gauge.size.x << 'x' << gauge.size.y << " bitmap "
            << gauge.background << " surface " << BoxText(gauge.surface.box)
            << (gauge.surface.luminous ? " luminous\n" : "\n");
        for (const IconRow& icon : gauge.icons) {
            out << "  " << BoxText(icon.box) << " bitmap " << icon.resource << '\n';
        }
        if (gauge.keys != nullptr) {
            WriteKeys(*gauge.keys, out);
        }
    }
    return out.str();
}

TEST(Gauges, HaveTheirKeysWhereTheyHadThemWhenLastLookedAt) {
    test::ExpectAsKept(Gauges(), "host/gauges.txt");
}

}  // namespace
}  // namespace avq1
