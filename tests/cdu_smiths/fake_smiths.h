// tests/cdu_smiths/fake_smiths.h - the Smiths-style unit on a table, and what its tests begin with.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "cdu_gns/fake_unit.h"
#include "cdu_gns/gns_fixture.h"
#include "cdu_smiths/smiths.h"
#include "flightplan/plan_notation.h"

namespace avq1::test {

// Presses keys by their labels, "INIT_REF" and "NEXT_PAGE" where a label has two lines, "L1" to
// "R6" for the line keys; "=KSFO/-1" types the characters one after the other. A draw after each.
class FakeSmiths : public FakeUnit {
  public:
    // Texts are the same in every size, and a small one is quick.
    explicit FakeSmiths(double scale = 1)
        : FakeUnit(kSmithsKeys, DrawSmiths, static_cast<int>(282 * scale),
                   static_cast<int>(245 * scale)),
          heightScale_(static_cast<int>(245 * scale) / 245.0) {}

    void Press(const std::string& keys) {
        std::istringstream words(keys);
        for (std::string word; words >> word;) {
            if (word.front() == '=') {
                for (const char each : word.substr(1)) {
                    Type(each);
                }
            } else {
                Click(word);
                Draw();
            }
        }
    }

    std::vector<std::string> After(const std::string& keys) {
        Press(keys);
        return Rows();
    }

    // A key without a draw after it.
    void Click(const std::string& name) {
        const auto found = std::find_if(keys_.begin(), keys_.end(),
                                        [&](const KeyArea& row) { return name == NameOf(row); });
        ASSERT_NE(found, keys_.end()) << name;
        found->action({*found, {}});
    }

    // What a key is called here.
    static std::string NameOf(const KeyArea& key) {
        std::string name = key.label;
        if (name.starts_with("Line select")) {
            return std::string(name.ends_with("left") ? "L" : "R") + name[12];
        }
        std::ranges::replace(name, '\n', '_');
        return name;
    }

    // The texts at this height from the left with "|" between them; empty without any.
    std::string At(int y) const {
        std::vector<const DrawnText*> texts;
        for (const DrawnText& text : Texts()) {
            if (std::lround(text.y / heightScale_) == y) {
                texts.push_back(&text);
            }
        }
        std::ranges::sort(texts, {}, &DrawnText::x);
        std::string line;
        for (const DrawnText* text : texts) {
            line += (line.empty() ? "" : "|") + text->text;
        }
        return line;
    }
    std::string Title() const { return At(0); }
    std::string Label(int row) const { return At(kSmithsLabelYs[row - 1]); }  // row 1 to 6
    std::string Data(int row) const { return At(kSmithsDataYs[row - 1]); }
    std::string Bottom() const { return At(222); }

  private:
    static constexpr int kSmithsLabelYs[] = {22, 55, 88, 121, 154, 187};
    static constexpr int kSmithsDataYs[] = {33, 66, 99, 132, 165, 198};

    void Type(char each) {
        if (each == '-' || each == '+') {
            for (int i = each == '-' ? 1 : 2; i > 0; --i) {
                Click("+/-");
            }
        } else {
            Click(each == ' ' ? "SP" : std::string(1, each));
        }
        Draw();
    }

    double heightScale_;
};

// GnsTest's plan and database, with this unit beside the other.
class SmithsTest : public GnsTest {
  protected:
    SmithsTest() {
        InstallSmiths();
        cdu.Draw();
    }

    // Speeds of a jet and their limits.
    static void SetJet() {
        performance.climbIas = 280;
        performance.climbIasMin = 230;
        performance.climbIasMax = 310;
        performance.cruiseIas = 280;
        performance.cruiseIasMax = 310;
        performance.descentIas = 270;
        performance.descentIasMin = 220;
        performance.descentIasMax = 300;
        performance.takeoffFlaps = 5;
        DeriveMachLimits(performance);
        DeriveSpeeds(performance);
    }

    // The plan of MakePlan as an active route.
    void MakeRoute() {
        MakePlan();
        planBook.status = RouteStatus::Active;
        planBook.originIdent = "KAAA";
        planBook.destinationIdent = "KBBB";
    }

    // Types, presses the line key, and says what became of the entry: the message, or "typed" left
    // in the scratchpad, or "ok" when it was used up.
    std::string Enter(const std::string& typed, const std::string& lineKey) {
        smiths.scratchpad = typed;
        smiths.message.clear();
        cdu.Press(lineKey);
        if (!smiths.message.empty()) {
            EXPECT_EQ(smiths.scratchpad, typed) << "a refused entry stays";
            return smiths.message;
        }
        return smiths.scratchpad.empty() ? "ok" : smiths.scratchpad;
    }

    FakeSmiths cdu;
};

}  // namespace avq1::test
