// A shared object that is no gauge module.
extern "C" __attribute__((visibility("default"))) int SomethingElse = 1;
