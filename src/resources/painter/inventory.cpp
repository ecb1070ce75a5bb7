#include "resources/painter/inventory.h"

#include <algorithm>

namespace avq1 {
namespace {

BitmapPlan& PlanFor(std::vector<BitmapPlan>& plans, std::int32_t number, PixelPoint size,
                    BitmapRole role) {
    const auto found = std::find_if(plans.begin(), plans.end(),
                                    [&](const BitmapPlan& plan) { return plan.number == number; });
    if (found != plans.end()) {
        // A screen may also stand alone, as the background of a gauge without a bezel.
        if (role == BitmapRole::Screen) {
            found->role = role;
        }
        return *found;
    }
    BitmapPlan plan;
    plan.number = number;
    plan.size = size;
    plan.role = role;
    return plans.emplace_back(std::move(plan));
}

bool SameBox(const PixelBox& a, const PixelBox& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

void AddKeys(BitmapPlan& plan, std::span<const KeyArea> keys) {
    for (const KeyArea& key : keys) {
        const bool known = std::any_of(plan.keys.begin(), plan.keys.end(), [&](const KeyArea& own) {
            return SameBox(own.box, key.box);
        });
        if (!known) {
            plan.keys.push_back(key);
        }
    }
}

void AddIcons(BitmapPlan& plan, std::span<const IconRow> icons) {
    for (const IconRow& icon : icons) {
        const bool known =
            std::any_of(plan.icons.begin(), plan.icons.end(), [&](const IconPlace& own) {
                return own.number == icon.resource && SameBox(own.box, icon.box);
            });
        if (!known) {
            plan.icons.push_back({icon.resource, icon.box});
        }
    }
}

}  // namespace

std::vector<BitmapPlan> PlanBitmaps(std::span<const GaugeRow> gauges) {
    std::vector<BitmapPlan> plans;
    for (const GaugeRow& gauge : gauges) {
        if (gauge.background == 0) {
            continue;
        }
        BitmapPlan& background =
            PlanFor(plans, gauge.background, gauge.size, BitmapRole::Background);
        if (gauge.surface.resource != 0 && gauge.surface.resource != gauge.background) {
            background.screen = gauge.surface.box;
        }
        if (gauge.keys != nullptr) {
            AddKeys(background, gauge.keys->rows);
        }
        AddIcons(background, gauge.icons);
        if (gauge.surface.resource != 0) {
            PlanFor(plans, gauge.surface.resource,
                    {gauge.surface.box.width, gauge.surface.box.height}, BitmapRole::Screen);
        }
        for (const IconRow& icon : gauge.icons) {
            BitmapPlan& plan =
                PlanFor(plans, icon.resource, {icon.box.width, icon.box.height}, BitmapRole::Icon);
            plan.owner = plan.owner == 0 ? gauge.background : plan.owner;
        }
    }
    return plans;
}

const BitmapPlan* FindPlan(std::span<const BitmapPlan> plans, std::int32_t number) {
    for (const BitmapPlan& plan : plans) {
        if (plan.number == number) {
            return &plan;
        }
    }
    return nullptr;
}

}  // namespace avq1
