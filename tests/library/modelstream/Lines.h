#pragma once

#include "tests/support/LogLine.h"

#include <string>

/// What the room's operations log.
namespace StreamLines
{

inline const LogLine CheckEntry = Log(4, 1, "[CheckIStreamForUserModel] Entry.");
inline const LogLine NoModel = Log(5, 1, "[CheckIStreamForUserModel] There is no user model data in IStream.");
inline const LogLine CheckExit = Log(4, 1, "[CheckIStreamForUserModel] Exit.");
inline const Lines ModelFound = CheckEntry + CheckExit;
inline const Lines NoModelFound = CheckEntry + NoModel + CheckExit;

inline Lines CheckSeekFailed(int32_t status)
{
    return CheckEntry +
           LogWithStatus(2, 1, "[CheckIStreamForUserModel] Failed to set pointer to the beginning of IStream.", status);
}

inline Lines CheckReadFailed(int32_t status)
{
    return CheckEntry + LogWithStatus(2, 1, "[CheckIStreamForUserModel] Failed to read from IStream.", status);
}

inline const LogLine GetEntry = Log(4, 1, "[GetUserModelFromIStream] Entry.");
inline const LogLine GetExit = Log(4, 1, "[GetUserModelFromIStream] Exit.");
inline const LogLine EndNotFound = Log(2, 1, "[GetUserModelFromIStream] Failed to set pointer to end of stream.");
inline const LogLine BeginningNotFound = Log(2, 1, "[GetUserModelFromIStream] Failed set pointer to beggining of stream");
inline const LogLine GetWithoutMemory = Log(2, 1, "[GetUserModelFromIStream] Failed to allocate memory for model data.");

inline LogLine SizeExpected(uint32_t size)
{
    return LogFormat(5, 1, "[GetUserModelFromIStream] Expected user model size from IStream: " + std::to_string(size) + ".");
}

/// A model that was read whole.
inline Lines ModelRead(uint32_t size)
{
    return GetEntry + SizeExpected(size) +
           LogFormat(5, 1,
                     "[GetUserModelFromIStream] User model data read successfully. Data size: " + std::to_string(size) + ".") +
           GetExit;
}

/// @param status in hexadecimal
inline Lines ModelNotRead(const std::string& status, uint32_t count, uint32_t size)
{
    return GetEntry + SizeExpected(size) +
           LogFormat(2, 1,
                     "[GetUserModelFromIStream] Reading user model data failed. Status: 0x" + status +
                         " . Data size: " + std::to_string(count) + " , expected: " + std::to_string(size) + ".") +
           GetExit;
}

inline const LogLine WriteEntry = Log(4, 1, "[WriteModelToIStream] Entry.");
inline const LogLine WriteExit = Log(4, 1, "[WriteModelToIStream] Exit.");

inline LogLine BytesWritten(uint32_t count)
{
    return LogFormat(5, 1, "[WriteModelToIStream] Bytes written: " + std::to_string(count) + ".");
}

inline Lines ModelWritten(uint32_t count)
{
    return WriteEntry + BytesWritten(count) + WriteExit;
}

/// @param what "change stream size", "seek to stream begining", "write model to IStream", "commit data to stream" or "revert
/// IStream changes"
inline LogLine NotDone(const std::string& what, int32_t status)
{
    return LogWithStatus(2, 1, "[WriteModelToIStream] Failed to " + what + ".", status);
}

} // namespace StreamLines
