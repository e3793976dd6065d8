// Two things stay allocated: the function table of an instance, which a host may still look at after DestroyInstance,
// and the object that each query of the snapshot gains was answered from, which the core forgets at the next query.
// What else is lost is a fault.

extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:CreateKiroCoreAlgo\n"
           "leak:CKIROTriggerManager::NewTriggerData\n";
}
