// IDENT: aircraft, engines, navigation data and program.
#include "cdu_smiths/smiths_pages.h"
#include "navdb/database_cycle.h"
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

// As long as the file has it.
constexpr FieldRow Fitted(std::int32_t line, const char* label, FieldRow::Show show) {
    FieldRow field = SmithsField(line, {.label = label, .show = show});
    field.style = IsOnTheRight(line) ? kSmithsFittedRight : kSmithsFitted;
    return field;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("IDENT"),
    Fitted(kL1, "M O D E L",
           [](const FieldRow&, UnitText& text) { ShowText(performance.modelId, text); }),
    SmithsField(kR1, {.label = "E N G   R A T I N G", .show = ShowRating}),
    Fitted(kL2, "N A V   D A T A",
           [](const FieldRow&, UnitText& text) { ShowText(DatabaseCycle, text); }),
    Fitted(kR2, "A C T I V E",
           [](const FieldRow&, UnitText& text) { ShowText(DatabaseValidity, text); }),
    SmithsField(kR3, {.show = [](const FieldRow&, UnitText& text) { text.Set("OUT OF DATE"); },
                      .visible = [](const FieldRow&) { return IsDatabaseExpired(); }}),
    SmithsField(kL4, {.label = "O P   P R O G R A M", .show = ShowProgram}),
    Fitted(kR5, "S U P P  D A T A",
           [](const FieldRow&, UnitText& text) { ShowText(performance.performanceData, text); }),
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
