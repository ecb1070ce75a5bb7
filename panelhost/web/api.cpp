#include "panelhost/web/api.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <set>

#include "panelhost/base/text.h"
#include "panelhost/session/situations.h"
#include "panelhost/web/audience.h"
#include "panelhost/web/server_messages.h"

namespace panelhost {
namespace {

using Json = nlohmann::json;

std::string Write(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Number(double value) {
    return std::isfinite(value) ? Json(std::round(value * 1e6) / 1e6) : Json();
}

const Display* FindGaugeDisplay(const Audience& audience, std::string_view name) {
    for (const Display& display : audience.displays) {
        if (display.kind == DisplayKind::Gauge && EqualNoCase(display.name, name)) {
            return &display;
        }
    }
    return nullptr;
}

// A key's name: its label, or # and its place among the gauge's areas, from 1.
std::string KeyNameOf(const ClickArea& area, std::size_t index) {
    return area.label.empty() ? "#" + std::to_string(index + 1) : area.label;
}

struct NamedKey {
    std::shared_ptr<Feed> feed;
    ClickArea area;
    std::string problem;  // why there is none
};

NamedKey FindKey(Audience& audience, const ClientMessage& message) {
    NamedKey key;
    const Display* const display = FindGaugeDisplay(audience, message.gauge);
    if (display == nullptr) {
        key.problem = "no gauge \"" + message.gauge + "\"";
        return key;
    }
    key.feed = FindFeed(audience, display->index, 1);
    if (!key.feed) {
        key.problem = "too much is shown already";
        return key;
    }
    const std::vector<ClickArea> areas = audience.session->ClickAreas(key.feed->view);
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (EqualNoCase(KeyNameOf(areas[i], i), message.key)) {
            key.area = areas[i];
            return key;
        }
    }
    key.problem = "gauge \"" + message.gauge + "\" has no key \"" + message.key + "\"";
    return key;
}

// The screen's words as lines, top to bottom, left to right.
Json LinesOf(std::vector<DrawnText> texts) {
    std::stable_sort(texts.begin(), texts.end(), [](const DrawnText& a, const DrawnText& b) {
        return a.y != b.y ? a.y < b.y : a.x < b.x;
    });
    Json lines = Json::array();
    std::vector<const DrawnText*> line;
    const auto close = [&] {
        std::sort(line.begin(), line.end(),
                  [](const DrawnText* a, const DrawnText* b) { return a->x < b->x; });
        std::string words;
        for (const DrawnText* text : line) {
            words += (words.empty() ? "" : "  ") + text->text;
        }
        if (!words.empty()) {
            lines.push_back(words);
        }
        line.clear();
    };
    for (const DrawnText& text : texts) {
        if (!line.empty() && text.y - line.front()->y > std::max(3.0, text.pixelSize * 0.5)) {
            close();
        }
        line.push_back(&text);
    }
    close();
    return lines;
}

Json LampsJson(const Session& session, int view) {
    Json lamps = Json::object();
    for (const Lamp& lamp : session.Lamps(view)) {
        lamps[lamp.name] = lamp.on;
    }
    return lamps;
}

Json GaugeJson(const Session& session, const Display& display, int view) {
    return {{"gauge", display.name},
            {"lines", LinesOf(session.Texts(view))},
            {"lamps", LampsJson(session, view)}};
}

// What subscribers of the gauge are told, made once for all of them.
void RefreshGauge(const Audience& audience, Feed& feed) {
    if (feed.gauge && feed.gaugeRevision == feed.info.revision) {
        return;
    }
    feed.gaugeRevision = feed.info.revision;
    Json json = GaugeJson(*audience.session,
                          audience.displays[static_cast<std::size_t>(feed.display)], feed.view);
    json["t"] = "gauge";
    std::string text = Write(json);
    if (!feed.gauge || *feed.gauge != text) {
        feed.gauge = Shared(std::move(text));
    }
}

Json KeysJson(const Session& session, int view) {
    Json keys = Json::array();
    const std::vector<ClickArea> areas = session.ClickAreas(view);
    for (std::size_t i = 0; i < areas.size(); ++i) {
        keys.push_back({{"key", KeyNameOf(areas[i], i)},
                        {"repeats", areas[i].repeatsWhileHeld},
                        {"wheel", areas[i].takesWheel}});
    }
    return keys;
}

Json ValueOf(const Session& session, const std::string& name) {
    if (!name.empty() && name.front() == '#') {
        const auto number = ToInteger(std::string_view(name).substr(1));
        const auto value = number && *number >= 0 && *number < 100000
                               ? session.NumberedVariable(static_cast<int>(*number))
                               : std::nullopt;
        return value ? Number(*value) : Json();
    }
    const std::optional<NamedVariable> variable = session.FindVariable(name);
    return !variable ? Json() : variable->isText ? Json(variable->text) : Number(variable->number);
}

std::string Problem(const std::string& text) {
    return Write({{"t", "error"}, {"problem", text}});
}

ApiReply ListGauges(Audience& audience) {
    Json gauges = Json::array();
    for (const Display& display : audience.displays) {
        if (display.kind == DisplayKind::Gauge) {
            gauges.push_back({{"gauge", display.name}, {"title", display.title}});
        }
    }
    return {200, Write({{"api", kApiVersion}, {"gauges", std::move(gauges)}})};
}

ApiReply ShowGauge(Audience& audience, std::string_view name, double nowS) {
    const Display* const display = FindGaugeDisplay(audience, name);
    const auto feed = display != nullptr ? FindFeed(audience, display->index, 1) : nullptr;
    if (!feed) {
        return {display == nullptr ? 404U : 503U,
                Problem(display == nullptr ? "no such gauge" : "too much is shown already")};
    }
    feed->wantedS = nowS;
    audience.session->Look(feed->view);
    Json gauge = GaugeJson(*audience.session, *display, feed->view);
    gauge["title"] = display->title;
    gauge["keys"] = KeysJson(*audience.session, feed->view);
    return {200, Write(gauge)};
}

// Keeps what a message is answered with, for a request that has no socket.
struct Collector : Outlet {
    std::string answer;
    void Send(bool binary, SharedText bytes) override {
        if (!binary && answer.empty()) {
            answer = *bytes;
        }
    }
};

ApiReply Do(Audience& audience, std::string_view body) {
    const ClientMessage message = ParseClientMessage(body);
    if (message.action == ClientAction::Bad) {
        return {400, Problem(message.problem)};
    }
    constexpr ClientAction kNeedsSocket[] = {ClientAction::Watch, ClientAction::Painted,
                                             ClientAction::Subscribe, ClientAction::HoldKey,
                                             ClientAction::Down};
    if (std::ranges::find(kNeedsSocket, message.action) != std::end(kNeedsSocket)) {
        return {400, Problem("this needs the WebSocket")};
    }
    Collector collector;
    Watcher watcher;
    watcher.outlet = &collector;
    watcher.displays.resize(audience.displays.size());
    const bool good = ObeyMessage(audience, watcher, message);
    LetGoOfEverything(audience, watcher);
    const bool refused = !good || collector.answer.find("\"problem\"") != std::string::npos;
    return {refused ? 409U : 200U,
            refused ? (collector.answer.empty() ? Problem("no such display") : collector.answer)
                    : Write({{"t", "done"}})};
}

}  // namespace

std::string Subscribe(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    Subscription subscription;
    subscription.events = message.on;
    const auto events = audience.session->EventsSince(0);
    subscription.eventSerial = events.empty() ? 0 : events.back().serial;
    for (const std::string& name : message.gauges) {
        const Display* const display = FindGaugeDisplay(audience, name);
        if (display == nullptr) {
            return "no gauge \"" + name + "\"";
        }
        const auto feed = FindFeed(audience, display->index, 1);
        if (!feed) {
            return "too much is shown already";
        }
        if (std::ranges::find(subscription.gauges, feed, &Subscription::Gauge::feed) ==
            subscription.gauges.end()) {
            subscription.gauges.push_back({feed, nullptr});
        }
    }
    for (const std::string& name : message.variables) {
        subscription.variables.push_back({name, ""});
    }
    watcher.subscription = std::make_shared<Subscription>(std::move(subscription));
    return "";
}

std::string PressNamedKey(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    const NamedKey key = FindKey(audience, message);
    if (!key.problem.empty()) {
        return key.problem;
    }
    Session& session = *audience.session;
    session.MouseDown(key.feed->view, key.area.x + key.area.width / 2,
                      key.area.y + key.area.height / 2);
    audience.pointerOwner = &watcher;
    if (message.action == ClientAction::PressKey) {
        session.MouseUp();
        audience.pointerOwner = nullptr;
    }
    return "";
}

std::string TurnNamedKnob(Audience& audience, const ClientMessage& message) {
    const NamedKey key = FindKey(audience, message);
    if (!key.problem.empty()) {
        return key.problem;
    }
    const bool up = message.steps > 0;
    const double y = key.area.y + key.area.height / 2;
    // A knob turns up on its right half and down on its left one.
    const double x = key.area.x + key.area.width * (up ? 0.75 : 0.25);
    audience.pointerOwner = nullptr;
    for (int step = 0; step < std::abs(message.steps); ++step) {
        if (key.area.takesWheel) {
            audience.session->Wheel(key.feed->view, x, y, up);
        } else {
            audience.session->Click(key.feed->view, x, y);
        }
    }
    return "";
}

void TuneRadios(Session& session, const ClientMessage& message) {
    const auto send = [&session](const char* name, std::uint32_t value) {
        for (const KeyEventName& event : KeyEventNames()) {
            if (EqualNoCase(event.name, name)) {
                session.SendKeyEvent(event.number, value);
            }
        }
    };
    const auto bcd = [](double number) {
        return static_cast<std::uint32_t>(
            std::stoul(std::to_string(std::lround(number)), nullptr, 16));
    };
    const auto hundredths = [&bcd](double mhz) {
        return bcd(std::lround(mhz * 100) % 10000);  // the 1 of 1xx MHz is not sent
    };
    if (message.nav1Mhz) {
        send("NAV1_RADIO_SET", hundredths(*message.nav1Mhz));
    }
    if (message.nav2Mhz) {
        send("NAV2_RADIO_SET", hundredths(*message.nav2Mhz));
    }
    if (message.adfKhz) {
        send("ADF_SET", bcd(*message.adfKhz));
    }
    if (message.course1Mag) {
        send("VOR1_SET", static_cast<std::uint32_t>(std::lround(*message.course1Mag)));
    }
    if (message.course2Mag) {
        send("VOR2_SET", static_cast<std::uint32_t>(std::lround(*message.course2Mag)));
    }
}

void SendSubscribed(Audience& audience, Watcher& watcher) {
    Subscription* const wanted = watcher.subscription.get();
    if (wanted == nullptr || watcher.queuedMessages >= kMaxWaiting) {
        return;
    }
    const Session& session = *audience.session;
    for (Subscription::Gauge& gauge : wanted->gauges) {
        RefreshGauge(audience, *gauge.feed);
        if (gauge.told != gauge.feed->gauge) {
            gauge.told = gauge.feed->gauge;
            watcher.outlet->Send(false, gauge.told);
        }
    }
    Json changed = Json::object();
    for (Subscription::Variable& variable : wanted->variables) {
        const Json value = ValueOf(session, variable.name);
        std::string text = Write(value);
        if (text != variable.last) {
            variable.last = std::move(text);
            changed[variable.name] = value;
        }
    }
    if (!changed.empty()) {
        watcher.outlet->Send(false, Shared(Write({{"t", "values"}, {"values", changed}})));
    }
    if (wanted->events) {
        const std::vector<KeyEventRecord> fresh = session.EventsSince(wanted->eventSerial);
        if (!fresh.empty()) {
            wanted->eventSerial = fresh.back().serial;
            watcher.outlet->Send(false, Shared(EventsMessage(fresh)));
        }
    }
}

ApiReply AnswerApi(Audience& audience, std::string_view method, std::string_view path,
                   std::string_view body, bool mayTouch, double nowS) {
    constexpr std::string_view kGauge = "gauges/";
    constexpr std::string_view kVariable = "variables/";
    if (method == "POST") {
        if (path != "do") {
            return {404, Problem("only api/1/do takes a message")};
        }
        return mayTouch ? Do(audience, body) : ApiReply{403, Problem("look only")};
    }
    if (path == "gauges") {
        return ListGauges(audience);
    }
    if (path.starts_with(kGauge)) {
        return ShowGauge(audience, path.substr(kGauge.size()), nowS);
    }
    if (path == "status") {
        return {200, StatusMessage(audience.session->Status())};
    }
    if (path.starts_with(kVariable)) {
        // A number stands without its mark here, which would end the address.
        std::string name(path.substr(kVariable.size()));
        name = ToInteger(name) ? "#" + name : name;
        const Json value = ValueOf(*audience.session, name);
        return value.is_null() ? ApiReply{404, Problem("no such variable")}
                               : ApiReply{200, Write({{"name", name}, {"value", value}})};
    }
    return {404, Problem("no such address")};
}

}  // namespace panelhost
