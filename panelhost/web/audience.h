// panelhost/web/audience.h - who watches the panel, what each sees of it and does to it. No sockets
// here: a connection is an Outlet that takes what is to be sent.
//
// A display is drawn once for all who watch it at one scale. Everything told in pixels is told in
// design pixels but the pictures, which say their scale. Times are seconds of any steady clock.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "panelhost/session/session.h"
#include "panelhost/web/api.h"
#include "panelhost/web/client_message.h"
#include "panelhost/web/picture_feed.h"

namespace panelhost {

using SharedText = std::shared_ptr<const std::string>;

class Outlet {
  public:
    virtual ~Outlet() = default;
    virtual void Send(bool binary, SharedText bytes) = 0;
};

// What every watcher of a display at one scale shares; kept by its watchers and, for a while after
// the last of them, by the audience.
struct Feed {
    int display = 0;
    int scale = 1;  // as asked for
    int view = -1;  // of the session
    double wantedS = 0;
    bool isPictured = false;  // somebody wants its pictures, not only what stands on it
    bool isDrawn = false;     // in the present frame
    std::uint64_t drawnFrame = 0;
    WindowInfo info;
    PictureFeed picture;
    std::uint64_t pictureRevision = ~0ULL;  // of the session, when last compared
    std::uint64_t textsRevision = ~0ULL;
    std::uint64_t textsStamp = 0;  // grows with the text below
    SharedText texts;
    std::uint64_t areasStamp = 0;
    SharedText areas;
    std::uint64_t gaugeRevision = ~0ULL;  // of the view, when the text below was made
    SharedText gauge;                     // what subscribers are told; another one when it changes
};

struct WatchedDisplay {
    std::shared_ptr<Feed> feed;  // null: not watched
    int picturesUnshown = 0;     // sent, and not yet painted
    std::uint64_t pictureStamp = 0;
    std::uint64_t textsStamp = 0;
    std::uint64_t areasStamp = 0;
};

// One browser or program on the socket. Messages wait in its outlet; pictures hardly do: while two
// have not been shown, the next one is not made.
struct Watcher {
    Outlet* outlet = nullptr;
    std::string peer;                        // its address
    double drawnFor = 0;                     // pixels of late, when there is no time for all
    std::vector<WatchedDisplay> displays;    // in the audience's order
    std::set<std::pair<int, int>> heldKeys;  // scan code, virtual key
    std::uint64_t logStamp = 0;              // of the flight log it was told
    std::size_t logBytes = 0;                // how much of it
    SharedText profile;                      // the vertical profile it was told
    std::size_t queuedMessages = 0;          // waiting in the outlet
    bool mayTouch = true;                    // else it only looks
    std::shared_ptr<Subscription> subscription;
};

// A screen full of displays on any machine, and then some.
inline constexpr double kLeastPixelsAFrame = 4e6;
// One address leaves a third of what may be shown to others.
inline constexpr long kMostPixelsOfPeer = 32L << 20;

// The flight log as it was last read. Another stamp: it is another log, not more of the same.
struct LogFeed {
    std::string text;
    std::uint64_t stamp = 0;
};

struct Audience {
    Session* session = nullptr;
    std::vector<Display> displays;
    std::vector<WindowInfo> windows;  // of the panel file, as last told
    std::vector<std::shared_ptr<Feed>> feeds;
    LogFeed log;
    SharedText profile;
    std::vector<Watcher*> watchers;   // each takes itself off the list
    Watcher* pointerOwner = nullptr;  // whose press holds the mouse
    std::uint64_t frame = 0;
    bool touched = false;                          // since everybody was last told
    double pixelsAFrame = 4 * kLeastPixelsAFrame;  // that there is time to draw
    double drawnPixels = 0;                        // in the present frame
    bool isOverloaded = false;                     // not all that is watched was drawn
    int freshFrames = 0;  // in which texts are told at once: what a key asks for may need a tick
};

inline constexpr int kMaxUnshown = 2;
inline constexpr std::size_t kMaxWaiting = 8;  // who reads slowly skips to later messages

SharedText Shared(std::string text);

// audience.cpp: coming, going, and one frame
void OpenAudience(Session& session, Audience& audience);
void Join(Audience& audience, Watcher& watcher);  // greets it
void Leave(Audience& audience, Watcher& watcher);
// Shows what a watcher has just done, before the next frame; no time passes.
void Glance(Audience& audience);
// Advances the session by so many steps of dtS, draws what is watched and tells everybody.
void RunFrame(Audience& audience, int steps, double dtS, double nowS);

// turns.cpp: what is drawn when there is no time for all
// From how many pixels were drawn in a frame and how long the work took, in seconds on a core.
double NextPixelsAFrame(double pixelsAFrame, double drawnPixels, double tookS);
// Marks what is drawn in this frame, as many pixels as there is time for: addresses get the same
// share, then pages, then displays one after the other.
void TakeTurns(Audience& audience);

// flight_feeds.cpp: the flight log and the vertical profile
void RefreshFlight(Audience& audience);
void SendFlight(const Audience& audience, Watcher& watcher);

// feeds.cpp: what is drawn for whom
// The feed of a display at a scale, or a smaller one; null when too much is shown already.
std::shared_ptr<Feed> FindFeed(Audience& audience, int display, int scale);
double PixelsOf(const Feed& feed);  // of its picture
// Marks what somebody watches, so that the next step draws it; true when it is to be drawn.
bool MarkWatched(Audience& audience, double nowS);
void RefreshFeeds(Audience& audience);  // takes over what was drawn
void SendNews(Watcher& watcher);
// From now on it watches these displays, at scales of 1 to 3 or smaller where its address would
// have too much, and no others. False: no such display.
bool Watch(Audience& audience, Watcher& watcher, const std::vector<int>& displays,
           const std::vector<int>& scales);

// obey.cpp: carries out a message. False: it names what is not there, the connection ends.
bool ObeyMessage(Audience& audience, Watcher& watcher, const ClientMessage& message);
// Whether this is word of a picture the watcher was sent.
bool AwaitsPainted(const Watcher& watcher, const ClientMessage& message);
void LetGoOfEverything(Audience& audience, Watcher& watcher);  // the pointer and keys it holds

}  // namespace panelhost
