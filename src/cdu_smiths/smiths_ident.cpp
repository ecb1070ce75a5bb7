// IDENT: aircraft, engines, navigation data and program.
#include "cdu_smiths/smiths_pages.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

void ShowText(const std::string& value, UnitText& text) {
    text.Set("- - - - - -");
    if (!value.empty()) {
        text.Put("%.18s", value.c_str());
    }
}

void ShowRating(const FieldRow&, UnitText& text) {
    text.Set("- - K");
    if (performance.engineThrust > 0) {
        text.Put("%2d K", performance.engineThrust);
    }
}

void ShowProgram(const FieldRow&, UnitText& text) {
    text.Set("296485 - 11 - 07      (V01.4)");
}

constexpr FieldRow kFields[] = {
    SmithsTitle("IDENT"),
    SmithsField(kL1, {.label = "M O D E L",
                      .show = [](const FieldRow&,
                                 UnitText& text) { ShowText(performance.modelId, text); }}),
    SmithsField(kR1, {.label = "E N G   R A T I N G", .show = ShowRating}),
    SmithsField(kL2,
                {.label = "N A V   D A T A",
                 .show = [](const FieldRow&, UnitText& text) { ShowText(DatabaseCycle, text); }}),
    SmithsField(
        kR2, {.label = "A C T I V E",
              .show = [](const FieldRow&, UnitText& text) { ShowText(DatabaseValidity, text); }}),
    SmithsField(kL4, {.label = "O P   P R O G R A M", .show = ShowProgram}),
    SmithsField(kR5, {.label = "S U P P  D A T A",
                      .show = [](const FieldRow&,
                                 UnitText& text) { ShowText(performance.performanceData, text); }}),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "<INDEX", kSmithsIndex),
    SmithsPrompt(kR6, "POS  INIT>", kSmithsPos, {.press = AtSmithsSubPage<SmithsCounter::Pos, 1>}),
};

void ComposeIdent(Screen& screen) {
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsIdentPage{
    .page = kSmithsIdent, .fields = kFields, .compose = ComposeIdent};

}  // namespace avq1
