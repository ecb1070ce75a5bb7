// platform/panel_interface.h - the records the panel system and a gauge module exchange.
//
// The layouts are the simulator's published gauge interface: packed to 4 bytes, little-endian,
// pointers of the build's own size. Every offset is pinned below for 4- and 8-byte pointers, so
// one source serves the 32-bit simulators, later 64-bit hosts and our own panel host. Texts are
// null-terminated 8-bit strings owned by whoever fills the field in. A host clones a gauge header
// and its whole element tree for every placement: code reaches elements only through the header
// it is handed.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define AVQ1_PANEL_CALL __stdcall
#else
#define AVQ1_PANEL_CALL
#endif

#if defined(_WIN32)
#define AVQ1_EXPORT __declspec(dllexport)
#else
#define AVQ1_EXPORT __attribute__((visibility("default")))
#endif

namespace avq1 {

struct GaugeHeader;
struct MouseRectangle;
struct ElementHeader;

// Panel service events, the second argument of a gauge callback.
enum class PanelEvent : std::int32_t {
    QueryBefore = 0,
    QueryAfter = 1,
    Install = 2,  // extra value: the module's resource handle
    AfterInstall = 3,
    Initialise = 4,
    AfterInitialise = 5,
    Update = 6,  // about 18 times a second
    AfterUpdate = 7,
    Draw = 10,  // every frame
    AfterDraw = 11,
    Kill = 12,
    AfterKill = 13,
    ConnectToWindow = 14,  // extra value: the window
    DisconnectFromWindow = 15,
    PanelOpened = 16,
    PanelClosed = 17,
};

namespace image_flag {
inline constexpr std::uint32_t kTransparent = 0x1;
inline constexpr std::uint32_t kBright = 0x4;
inline constexpr std::uint32_t kMakeDeviceContext = 0x20;
inline constexpr std::uint32_t kLuminous = 0x4000;
inline constexpr std::uint32_t kHidden = 0x40000000;
inline constexpr std::uint32_t kOnScreen = 0x80000000;  // cleared to have the surface copied again
}  // namespace image_flag

namespace mouse_flag {
inline constexpr std::uint32_t kRightSingle = 0x80000000;
inline constexpr std::uint32_t kMiddleSingle = 0x40000000;
inline constexpr std::uint32_t kLeftSingle = 0x20000000;
inline constexpr std::uint32_t kLeftDouble = 0x04000000;
inline constexpr std::uint32_t kMove = 0x00400000;
inline constexpr std::uint32_t kDownRepeat = 0x00200000;
inline constexpr std::uint32_t kLeftRelease = 0x00020000;
inline constexpr std::uint32_t kWheelUp = 0x4000;
inline constexpr std::uint32_t kWheelDown = 0x2000;
}  // namespace mouse_flag

enum class ElementType : std::int32_t {
    StaticImage = 0,
    Needle = 1,
    String = 2,
    Slider = 3,
    Icon = 4,
    MovingImage = 5,
    Sprite = 6,
};

enum class MouseRectangleType : std::int32_t {
    End = 0,
    Parent = 1,
    Child = 2,
    EndOfParent = 3,
    User = 4,
};

enum class MouseCursor : std::int32_t {
    None = -1,
    Normal = 0,
    UpArrow = 1,
    DownArrow = 2,
    LeftArrow = 3,
    RightArrow = 4,
    Hand = 5,
    Crosshair = 6,
    Grab = 7,
};

// Variable type numbers of named and module variables.
enum class VariableType : std::int32_t {
    Float64 = 33,
    Pointer = 38,
    PointerToUint32 = 39,
    PointerToFloat64 = 41,
};

inline constexpr std::uint32_t kGaugeHeaderVersion = 800;
inline constexpr std::uint32_t kLinkageVersion = 0x800;
inline constexpr std::int32_t kLinkageModuleId = 0x13;
inline constexpr std::int32_t kPanelServiceKey = 0x0F;
inline constexpr std::int32_t kPlatformServiceKey = 0x50;
inline constexpr int kGaugeCount = 33;

#pragma pack(push, 4)

struct PixelPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct PixelBox {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// The leading fields of an image: all this module reads of it.
struct ImageRecord {
    std::uint32_t formatAndFlags = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

struct ElementHeader {
    ElementType type = ElementType::StaticImage;
    std::int32_t resourceNumber = 0;
    PixelPoint position;
    PixelPoint previousPosition;
    PixelPoint offset;
    GaugeHeader* gauge = nullptr;
    ElementHeader* previous = nullptr;
    ElementHeader** children = nullptr;  // null-terminated array, or null
    void* failures = nullptr;
    std::uint32_t imageFlags = 0;
    std::uint32_t specialFlags = 0;
    std::uint32_t reserved = 0;
};

struct StaticImageElement {
    ElementHeader header;
    ImageRecord* imageSet[4] = {};  // [0] final image, [1] source image
    void* saveBuffer = nullptr;
    void* deviceContext = nullptr;
    void* bitmap = nullptr;
    void* reserved[2] = {};
};

// What a mouse function is told of the click.
struct MouseCallbackData {
    PixelPoint relativePoint;  // inside the rectangle
    GaugeHeader* gauge = nullptr;
    const MouseRectangle* rectangle = nullptr;
    PixelPoint windowPoint;
    void* reserved = nullptr;
};

using MouseFunction = std::int32_t(AVQ1_PANEL_CALL*)(MouseCallbackData* data, std::uint32_t flags);

struct MouseRectangle {
    MouseRectangleType type = MouseRectangleType::End;
    PixelBox box;  // relative to the parent
    MouseCursor cursor = MouseCursor::None;
    std::int32_t helpId = 0;
    std::uint32_t mouseFlags = 0;
    std::int32_t keyEvent = 0;
    MouseFunction function = nullptr;
    void* reserved = nullptr;
};

using GaugeCallback = void(AVQ1_PANEL_CALL*)(GaugeHeader* gauge, std::int32_t event,
                                             std::uintptr_t extra);
using GaugeRoutine = void(AVQ1_PANEL_CALL*)();

struct GaugeHeader {
    std::uint32_t version = kGaugeHeaderVersion;
    const char* name = nullptr;
    ElementHeader** elements = nullptr;  // null-terminated list of element headers
    GaugeRoutine routines[7] = {};       // query, install, initialise, update, generate, draw, kill
    void* reserved1 = nullptr;
    std::uint32_t widthMm = 0;
    std::uint32_t heightMm = 0;
    float xAdjust = 0;
    float yAdjust = 0;
    void* reserved2[2] = {};
    PixelPoint position;
    void* reserved3 = nullptr;
    const MouseRectangle* mouseRectangles = nullptr;
    GaugeCallback callback = nullptr;
    std::uint32_t userData = 0;
    const char* parameters = nullptr;  // this placement's parameter text, may be null
    const char* usage = nullptr;
    std::int32_t reserved4 = 0;
    void* reserved5 = nullptr;
    PixelPoint size;
    double userArea[10] = {};
    std::uint32_t flags = 0;
    void* reserved6 = nullptr;
    std::uint8_t guid[16] = {};
    std::uint32_t keyId = 0;
    void* laterRoutines[5] = {};
    PixelPoint originalPosition;
};

struct ModuleVariable {
    std::int32_t number = 0;
    void* address = nullptr;
    std::int32_t type = 0;
    double value = 0;
    double previousValue = 0;
};

// The panel service table. Entries this module does not use are kept as plain addresses so the
// used ones stand at their published places; a host fills every entry with a callable function.
struct PanelServices {
    std::int32_t id = 0;
    GaugeRoutine init = nullptr;
    GaugeRoutine deinit = nullptr;
    std::uint32_t flags = 0;
    std::uint32_t priority = 0;
    std::uint32_t version = 0;
    void* entries0To4[5] = {};
    std::int32_t(AVQ1_PANEL_CALL* panel_window_shown)(std::uint32_t ident) = nullptr;  // 5
    void* entries6To28[23] = {};
    std::int32_t(AVQ1_PANEL_CALL* panel_window_toggle)(std::uint32_t ident) = nullptr;  // 29
    std::int32_t(AVQ1_PANEL_CALL* trigger_key_event)(std::int32_t event,
                                                     std::uint32_t value) = nullptr;  // 30
    void(AVQ1_PANEL_CALL* register_var_by_name)(void* value, std::int32_t type,
                                                const char* name) = nullptr;    // 31
    void(AVQ1_PANEL_CALL* initialize_var)(ModuleVariable* variable) = nullptr;  // 32
    void(AVQ1_PANEL_CALL* initialize_var_by_name)(ModuleVariable* variable,
                                                  const char* name) = nullptr;  // 33
    void(AVQ1_PANEL_CALL* lookup_var)(ModuleVariable* variable) = nullptr;      // 34
    void(AVQ1_PANEL_CALL* unregister_var_by_name)(const char* name) = nullptr;  // 35
    void* entries36To63[28] = {};
};

struct PanelServiceImport {
    std::int32_t key = kPanelServiceKey;
    PanelServices* services = nullptr;
};

struct ImportTableRecord {
    PanelServiceImport panel;
    PanelServiceImport end{0, nullptr};
};

struct LinkageRecord {
    std::int32_t moduleId = kLinkageModuleId;
    GaugeRoutine init = nullptr;
    GaugeRoutine deinit = nullptr;
    std::uint32_t flags = 0;
    std::uint32_t priority = 0;
    std::uint32_t version = kLinkageVersion;
    GaugeHeader* gauges[kGaugeCount + 1] = {};  // closed by a null pointer
};

// A keyboard hook: (code) -> 1 swallows the key message, 0 passes it on.
using KeyboardHook = std::int32_t (*)(std::int32_t code);

// A point of the vertical profile ahead of the aircraft.
struct VerticalProfilePoint {
    enum class Kind : std::int32_t { Entry = 0, TopOfClimb = 1, TopOfDescent = 2 };

    char name[16] = {};  // the entry's identifier, cut to 15 characters
    Kind kind = Kind::Entry;
    std::int32_t restriction = 0;  // 0 none, 1 at, 2 at or above, 3 at or below restrictionFt
    double distanceNm = 0;         // from the aircraft along the route
    double altitudeFt = 0;         // as predicted
    double restrictionFt = 0;
};

// What vertical guidance has planned, for a host that draws it. Lives only during the call.
struct VerticalProfileRecord {
    std::uint32_t size = sizeof(VerticalProfileRecord);
    std::int32_t phase = -1;   // 0 climb, 1 cruise, 2 descent; -1: nothing is planned
    std::int32_t engaged = 0;  // 1 while VNAV flies it
    std::int32_t count = 0;    // of points, in the order they are reached
    double cruiseAltitudeFt = 0;
    double targetAltitudeFt = 0;  // what is being flown to
    double pathAltitudeFt = 0;    // of the descent path at the aircraft
    const VerticalProfilePoint* points = nullptr;
};

// Linux only: what Windows offers through its own calls. Any member may be null, and members
// beyond `size` do not exist: the module then behaves as where that thing is absent.
struct PlatformServices {
    std::uint32_t size = 0;
    std::uint32_t spare = 0;
    void* (*find_window)(const char* className) = nullptr;
    std::int64_t (*send_message)(void* window, std::uint32_t message, std::uint64_t first,
                                 void* second) = nullptr;
    std::int32_t (*read_keyboard)(std::uint8_t state[256]) = nullptr;
    std::int32_t (*key_state)(std::int32_t virtualKey) = nullptr;
    std::int32_t (*set_keyboard_hook)(KeyboardHook hook) = nullptr;
    void (*text_drawn)(void* deviceContext, const char* text, double x, double y, double pixelSize,
                       std::uint32_t argb) = nullptr;
    void (*vertical_profile)(const VerticalProfileRecord* profile) = nullptr;
};

struct PlatformTableRecord {
    std::int32_t key = kPlatformServiceKey;
    PlatformServices* services = nullptr;
};

// A Linux device context: a picture in memory.
struct PixelDeviceContext {
    std::uint32_t size = sizeof(PixelDeviceContext);
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bytesPerRow = 0;
    std::uint32_t* pixels = nullptr;  // premultiplied ARGB words, top row first
};

#pragma pack(pop)

// ---- layout, pinned: offset with 4-byte pointers / offset with 8-byte pointers ----
#define AVQ1_PIN_OFFSET(record, field, offset32, offset64) \
    static_assert(offsetof(record, field) == (sizeof(void*) == 4 ? (offset32) : (offset64)))
#define AVQ1_PIN_SIZE(record, size32, size64) \
    static_assert(sizeof(record) == (sizeof(void*) == 4 ? (size32) : (size64)))

AVQ1_PIN_SIZE(GaugeHeader, 252, 348);
AVQ1_PIN_OFFSET(GaugeHeader, version, 0, 0);
AVQ1_PIN_OFFSET(GaugeHeader, name, 4, 4);
AVQ1_PIN_OFFSET(GaugeHeader, elements, 8, 12);
AVQ1_PIN_OFFSET(GaugeHeader, routines, 12, 20);
AVQ1_PIN_OFFSET(GaugeHeader, reserved1, 40, 76);
AVQ1_PIN_OFFSET(GaugeHeader, widthMm, 44, 84);
AVQ1_PIN_OFFSET(GaugeHeader, heightMm, 48, 88);
AVQ1_PIN_OFFSET(GaugeHeader, xAdjust, 52, 92);
AVQ1_PIN_OFFSET(GaugeHeader, yAdjust, 56, 96);
AVQ1_PIN_OFFSET(GaugeHeader, reserved2, 60, 100);
AVQ1_PIN_OFFSET(GaugeHeader, position, 68, 116);
AVQ1_PIN_OFFSET(GaugeHeader, reserved3, 76, 124);
AVQ1_PIN_OFFSET(GaugeHeader, mouseRectangles, 80, 132);
AVQ1_PIN_OFFSET(GaugeHeader, callback, 84, 140);
AVQ1_PIN_OFFSET(GaugeHeader, userData, 88, 148);
AVQ1_PIN_OFFSET(GaugeHeader, parameters, 92, 152);
AVQ1_PIN_OFFSET(GaugeHeader, usage, 96, 160);
AVQ1_PIN_OFFSET(GaugeHeader, reserved4, 100, 168);
AVQ1_PIN_OFFSET(GaugeHeader, reserved5, 104, 172);
AVQ1_PIN_OFFSET(GaugeHeader, size, 108, 180);
AVQ1_PIN_OFFSET(GaugeHeader, userArea, 116, 188);
AVQ1_PIN_OFFSET(GaugeHeader, flags, 196, 268);
AVQ1_PIN_OFFSET(GaugeHeader, reserved6, 200, 272);
AVQ1_PIN_OFFSET(GaugeHeader, guid, 204, 280);
AVQ1_PIN_OFFSET(GaugeHeader, keyId, 220, 296);
AVQ1_PIN_OFFSET(GaugeHeader, laterRoutines, 224, 300);
AVQ1_PIN_OFFSET(GaugeHeader, originalPosition, 244, 340);

AVQ1_PIN_SIZE(ElementHeader, 60, 76);
AVQ1_PIN_OFFSET(ElementHeader, type, 0, 0);
AVQ1_PIN_OFFSET(ElementHeader, resourceNumber, 4, 4);
AVQ1_PIN_OFFSET(ElementHeader, position, 8, 8);
AVQ1_PIN_OFFSET(ElementHeader, previousPosition, 16, 16);
AVQ1_PIN_OFFSET(ElementHeader, offset, 24, 24);
AVQ1_PIN_OFFSET(ElementHeader, gauge, 32, 32);
AVQ1_PIN_OFFSET(ElementHeader, previous, 36, 40);
AVQ1_PIN_OFFSET(ElementHeader, children, 40, 48);
AVQ1_PIN_OFFSET(ElementHeader, failures, 44, 56);
AVQ1_PIN_OFFSET(ElementHeader, imageFlags, 48, 64);
AVQ1_PIN_OFFSET(ElementHeader, specialFlags, 52, 68);
AVQ1_PIN_OFFSET(ElementHeader, reserved, 56, 72);

AVQ1_PIN_SIZE(StaticImageElement, 96, 148);
AVQ1_PIN_OFFSET(StaticImageElement, imageSet, 60, 76);
AVQ1_PIN_OFFSET(StaticImageElement, saveBuffer, 76, 108);
AVQ1_PIN_OFFSET(StaticImageElement, deviceContext, 80, 116);
AVQ1_PIN_OFFSET(StaticImageElement, bitmap, 84, 124);

AVQ1_PIN_SIZE(ImageRecord, 12, 12);
AVQ1_PIN_OFFSET(ImageRecord, width, 4, 4);
AVQ1_PIN_OFFSET(ImageRecord, height, 8, 8);

AVQ1_PIN_SIZE(MouseRectangle, 44, 52);
AVQ1_PIN_OFFSET(MouseRectangle, box, 4, 4);
AVQ1_PIN_OFFSET(MouseRectangle, cursor, 20, 20);
AVQ1_PIN_OFFSET(MouseRectangle, helpId, 24, 24);
AVQ1_PIN_OFFSET(MouseRectangle, mouseFlags, 28, 28);
AVQ1_PIN_OFFSET(MouseRectangle, keyEvent, 32, 32);
AVQ1_PIN_OFFSET(MouseRectangle, function, 36, 36);
AVQ1_PIN_OFFSET(MouseRectangle, reserved, 40, 44);

AVQ1_PIN_OFFSET(MouseCallbackData, gauge, 8, 8);
AVQ1_PIN_OFFSET(MouseCallbackData, rectangle, 12, 16);
AVQ1_PIN_OFFSET(MouseCallbackData, windowPoint, 16, 24);
AVQ1_PIN_OFFSET(MouseCallbackData, reserved, 24, 32);

AVQ1_PIN_SIZE(ModuleVariable, 28, 32);
AVQ1_PIN_OFFSET(ModuleVariable, address, 4, 4);
AVQ1_PIN_OFFSET(ModuleVariable, type, 8, 12);
AVQ1_PIN_OFFSET(ModuleVariable, value, 12, 16);
AVQ1_PIN_OFFSET(ModuleVariable, previousValue, 20, 24);

#define AVQ1_PIN_SERVICE(field, entry) \
    AVQ1_PIN_OFFSET(PanelServices, field, 24 + 4 * (entry), 32 + 8 * (entry))
AVQ1_PIN_SERVICE(panel_window_shown, 5);
AVQ1_PIN_SERVICE(panel_window_toggle, 29);
AVQ1_PIN_SERVICE(trigger_key_event, 30);
AVQ1_PIN_SERVICE(register_var_by_name, 31);
AVQ1_PIN_SERVICE(initialize_var, 32);
AVQ1_PIN_SERVICE(initialize_var_by_name, 33);
AVQ1_PIN_SERVICE(lookup_var, 34);
AVQ1_PIN_SERVICE(unregister_var_by_name, 35);
AVQ1_PIN_SIZE(PanelServices, 24 + 4 * 64, 32 + 8 * 64);

AVQ1_PIN_SIZE(ImportTableRecord, 16, 24);
AVQ1_PIN_OFFSET(ImportTableRecord, panel.services, 4, 4);
AVQ1_PIN_OFFSET(LinkageRecord, init, 4, 4);
AVQ1_PIN_OFFSET(LinkageRecord, deinit, 8, 12);
AVQ1_PIN_OFFSET(LinkageRecord, flags, 12, 20);
AVQ1_PIN_OFFSET(LinkageRecord, priority, 16, 24);
AVQ1_PIN_OFFSET(LinkageRecord, version, 20, 28);
AVQ1_PIN_OFFSET(LinkageRecord, gauges, 24, 32);

AVQ1_PIN_OFFSET(PlatformServices, find_window, 8, 8);
AVQ1_PIN_OFFSET(PlatformServices, send_message, 12, 16);
AVQ1_PIN_OFFSET(PlatformServices, text_drawn, 28, 48);
AVQ1_PIN_OFFSET(PlatformServices, vertical_profile, 32, 56);
AVQ1_PIN_SIZE(VerticalProfilePoint, 48, 48);
AVQ1_PIN_OFFSET(VerticalProfileRecord, points, 40, 40);
AVQ1_PIN_OFFSET(PlatformTableRecord, services, 4, 4);
AVQ1_PIN_OFFSET(PixelDeviceContext, width, 4, 4);
AVQ1_PIN_OFFSET(PixelDeviceContext, pixels, 16, 16);

#undef AVQ1_PIN_SERVICE
#undef AVQ1_PIN_SIZE
#undef AVQ1_PIN_OFFSET

}  // namespace avq1
