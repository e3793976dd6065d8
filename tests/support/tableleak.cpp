// The memory of an instance's function table stays allocated after DestroyInstance: hosts may still hold its address.
// So does the object that a query of the snapshot gains was answered from. These leaks are behaviour; all others are
// faults.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:CreateKiroCoreAlgo\n"
           "leak:CKIROTriggerManager::NewTriggerData\n";
}
