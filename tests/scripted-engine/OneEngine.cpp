#ifdef _WIN32
#define SCRIPTED_ENGINE_API __declspec(dllexport)
#endif
#include "tests/scripted-engine/ScriptedEngine.h"

// The process has one engine, as it has one of the real ones.
ScriptedEngine& GetScriptedEngine()
{
    static ScriptedEngine engine;
    return engine;
}
