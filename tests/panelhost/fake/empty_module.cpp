// A shared object that is no gauge module.
__attribute__((visibility("default"))) int somethingElse = 1;
