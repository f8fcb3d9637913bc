#pragma once

#include "IVeloxKeywordDetectorLogger.h"

/// A logger that drops every line: what a logger does with them is its caller's cost.
class SilentLogger : public IVeloxKeywordDetectorLogger
{
public:
    void Log(uint32_t, uint32_t, const std::string&) override
    {
    }
    void LogWithStatus(uint32_t, uint32_t, const std::string&, int32_t) override
    {
    }
    void LogWithCode(uint32_t, uint32_t, const std::string&, uint32_t) override
    {
    }
    void LogFormat(uint32_t, uint32_t, const char*, ...) override
    {
    }
    void SetLevel(uint32_t) override
    {
    }
    void SetLogToFile(bool) override
    {
    }
};
