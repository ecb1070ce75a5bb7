// System calls that the compiler's thread library imports and the oldest Windows does not have.
//
// A module that imports a missing call does not load at all. These definitions take the imports'
// place: each asks for the real call when it is first made and does without it where there is none.
#include <windows.h>

#if defined(_WIN64)
#define AVQ1_IMPORT(name, argumentBytes) __asm__("__imp_" #name)
#else
#define AVQ1_IMPORT(name, argumentBytes) __asm__("__imp__" #name "@" #argumentBytes)
#endif

namespace {

void* KernelCall(const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), name));
}

// Milliseconds since the system started; without the real call they begin anew every 49 days, which
// a wait outlives.
ULONGLONG WINAPI TickCount64() {
    using Call = ULONGLONG(WINAPI*)();
    static const auto call = reinterpret_cast<Call>(KernelCall("GetTickCount64"));
    return call != nullptr ? call() : GetTickCount();
}

// The thread library only names threads for a debugger with these.
PVOID WINAPI AddHandler(ULONG first, PVECTORED_EXCEPTION_HANDLER handler) {
    using Call = PVOID(WINAPI*)(ULONG, PVECTORED_EXCEPTION_HANDLER);
    static const auto call = reinterpret_cast<Call>(KernelCall("AddVectoredExceptionHandler"));
    return call != nullptr ? call(first, handler) : nullptr;
}

ULONG WINAPI RemoveHandler(PVOID handler) {
    using Call = ULONG(WINAPI*)(PVOID);
    static const auto call = reinterpret_cast<Call>(KernelCall("RemoveVectoredExceptionHandler"));
    return call != nullptr ? call(handler) : 0;
}

}  // namespace

extern "C" {
extern void* const avq1TickCountImport AVQ1_IMPORT(GetTickCount64, 0);
extern void* const avq1AddHandlerImport AVQ1_IMPORT(AddVectoredExceptionHandler, 8);
extern void* const avq1RemoveHandlerImport AVQ1_IMPORT(RemoveVectoredExceptionHandler, 4);
void* const avq1TickCountImport = reinterpret_cast<void*>(&TickCount64);
void* const avq1AddHandlerImport = reinterpret_cast<void*>(&AddHandler);
void* const avq1RemoveHandlerImport = reinterpret_cast<void*>(&RemoveHandler);
}
