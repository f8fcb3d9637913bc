// Makes the compiler lay out the interfaces' virtual tables: their own, and those of classes that override every operation, so
// that each slot bears a name. Without "override": a changed operation is to be found in the tables, and not refused by the
// compiler.
#include "VeloxHwKwsImpl.h"
#include "oemadapter/windows/EventDetectorOemAdapter.h"
#include "oemadapter/windows/KeywordDetectorOemAdapter.h"

using namespace KeywordDetectorAdapterImplementation;

void Delete(IVeloxKeywordDetectorLogger* logger, IVeloxKeywordDetectorAdapterImpl* adapter, IVeloxWovWrapper* wrapper)
{
    delete logger;
    delete adapter;
    delete wrapper;
}

struct Logger : IVeloxKeywordDetectorLogger
{
    ~Logger();
    void Log(uint32_t, uint32_t, const std::string&);
    void LogWithStatus(uint32_t, uint32_t, const std::string&, int32_t);
    void LogWithCode(uint32_t, uint32_t, const std::string&, uint32_t);
    void LogFormat(uint32_t, uint32_t, const char*, ...);
    void SetLevel(uint32_t);
    void SetLogToFile(bool);
};

struct Adapter : IVeloxKeywordDetectorAdapterImpl
{
    ~Adapter();
    HRESULT GetCapabilities(int32_t*, uint32_t**, uint32_t*, uint16_t**, uint32_t*, IMFMediaType**);
    HRESULT VerifyUserKeyword(IStream*, uint32_t, uint16_t, int32_t, IMFMediaBuffer*);
    HRESULT ComputeAndAddUserModelData(IStream*, KeywordSelector, const int32_t*, IMFMediaBuffer**, uint32_t);
    HRESULT BuildArmingPatternData(IStream*, const KeywordSelector*, uint32_t, uint8_t**);
    HRESULT ParseDetectionResultData(IStream*, const DetectionResult*, uint32_t*, uint16_t*, BOOL*, uint64_t*, uint64_t*);
};

struct Wrapper : IVeloxWovWrapper
{
    ~Wrapper();
    HRESULT Initialize();
    HRESULT VerifyKeyword(IMFMediaBuffer*, int32_t, bool*);
    HRESULT TrainModel(IMFMediaBuffer**, uint32_t, const int32_t*, uint8_t**, uint32_t*);
};

struct KeywordOemAdapter : IKeywordDetectorOemAdapter
{
    HRESULT STDMETHODCALLTYPE QueryInterface(const IID&, void**);
    ULONG STDMETHODCALLTYPE AddRef();
    ULONG STDMETHODCALLTYPE Release();
    HRESULT STDMETHODCALLTYPE GetCapabilities(BOOL*, KEYWORDID**, ULONG*, LANGID**, ULONG*, IMFMediaType**);
    HRESULT STDMETHODCALLTYPE VerifyUserKeyword(IStream*, KEYWORDID, LANGID, LONG, IMFMediaBuffer*);
    HRESULT STDMETHODCALLTYPE ComputeAndAddUserModelData(IStream*, KEYWORDSELECTOR, LONG*, IMFMediaBuffer**, ULONG);
    HRESULT STDMETHODCALLTYPE BuildArmingPatternData(IStream*, KEYWORDSELECTOR*, ULONG, SOUNDDETECTOR_PATTERNHEADER**);
    HRESULT STDMETHODCALLTYPE ParseDetectionResultData(IStream*, SOUNDDETECTOR_PATTERNHEADER*, KEYWORDID*, LANGID*, BOOL*,
                                                       ULONG64*, ULONG64*);
};

struct EventOemAdapter : IEventDetectorOemAdapter
{
    HRESULT STDMETHODCALLTYPE QueryInterface(const IID&, void**);
    ULONG STDMETHODCALLTYPE AddRef();
    ULONG STDMETHODCALLTYPE Release();
    HRESULT STDMETHODCALLTYPE GetCapabilities(EVENTFEATURES*, LANGID**, ULONG*, ULONG*, WAVEFORMATEX**);
    HRESULT STDMETHODCALLTYPE GetCapabilitiesForLanguage(LANGID, DETECTIONEVENT**, ULONG*);
    HRESULT STDMETHODCALLTYPE VerifyUserEventData(IStream*, WAVEFORMATEX*, DETECTIONEVENTSELECTOR, LONG);
    HRESULT STDMETHODCALLTYPE ComputeAndAddUserModelData(IStream*, DETECTIONEVENTSELECTOR, LONG*, WAVEFORMATEX**, ULONG);
    HRESULT STDMETHODCALLTYPE BuildArmingPatternData(IStream*, DETECTIONEVENTSELECTOR*, ULONG, SOUNDDETECTOR_PATTERNHEADER**);
    HRESULT STDMETHODCALLTYPE ParseDetectionResultData(IStream*, SOUNDDETECTOR_PATTERNHEADER*, SOUNDDETECTOR_PATTERNHEADER**,
                                                       DETECTIONEVENTSELECTOR*, EVENTACTION*, ULONG64*, ULONG64*, WCHAR**);
    void STDMETHODCALLTYPE ReportOSDetectionResult(DETECTIONEVENTSELECTOR, EVENTACTION);
};

// Each table is laid out where its class's first function is defined.
Logger::~Logger() = default;
Adapter::~Adapter() = default;
Wrapper::~Wrapper() = default;

HRESULT STDMETHODCALLTYPE KeywordOemAdapter::QueryInterface(const IID&, void**)
{
    return 0;
}

HRESULT STDMETHODCALLTYPE EventOemAdapter::QueryInterface(const IID&, void**)
{
    return 0;
}
