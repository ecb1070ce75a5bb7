// panelhost/web/api.h - the interface for hardware and programs: gauges and keys by their names,
// what is subscribed to, and the same over plain HTTP. docs/api.md describes it for its users.
//
// A gauge is reached through a view of its own, so it answers whether the panel shows it or not.
// Nothing throws; what cannot be done is said in one line.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

struct Audience;
struct ClientMessage;
struct Feed;
struct Watcher;

inline constexpr int kApiVersion = 1;
inline constexpr int kMostSteps = 50;  // of a knob, in one message

// What a watcher wants to be told when it changes.
struct Subscription {
    struct Gauge {
        std::shared_ptr<Feed> feed;
        std::shared_ptr<const std::string> told;
    };
    struct Variable {
        std::string name;  // as asked for: a named variable, or # and a number
        std::string last;  // its JSON
    };
    std::vector<Gauge> gauges;
    std::vector<Variable> variables;
    bool events = false;
    std::uint64_t eventSerial = 0;  // told up to here
};

// Each carries out one message; those that name gauges and keys say why it cannot be done, or
// nothing.
std::string Subscribe(Audience& audience, Watcher& watcher, const ClientMessage& message);
std::string PressNamedKey(Audience& audience, Watcher& watcher, const ClientMessage& message);
std::string TurnNamedKnob(Audience& audience, const ClientMessage& message);
void TuneRadios(Session& session, const ClientMessage& message);

void SendSubscribed(Audience& audience, Watcher& watcher);

struct ApiReply {
    unsigned status = 200;
    std::string json;
};
// Answers a plain request; `path` begins behind "/api/1/". Without mayTouch only looking is
// answered.
ApiReply AnswerApi(Audience& audience, std::string_view method, std::string_view path,
                   std::string_view body, bool mayTouch, double nowS);

}  // namespace panelhost
