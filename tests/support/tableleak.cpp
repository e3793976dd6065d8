// The memory of an instance's function table stays allocated after DestroyInstance: hosts may still hold its address.
// That leak is behaviour; all others are faults.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:CreateKiroCoreAlgo\n";
}
