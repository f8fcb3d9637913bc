#include "tests/scripted-engine/ScriptedEngine.h"

// Each thread has an engine of its own, so that whatever threads have in common is not the engine's.
ScriptedEngine& GetScriptedEngine()
{
    static thread_local ScriptedEngine engine;
    return engine;
}
