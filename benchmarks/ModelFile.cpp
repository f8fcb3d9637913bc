#include "benchmarks/Floors.h"
#include "benchmarks/Measurement.h"
#include "benchmarks/SilentLogger.h"
#include "library/configuration/ConfigurationReader.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/TestConfiguration.h"

#include <benchmark/benchmark.h>

#include <stdexcept>

namespace
{

constexpr double Goal = 1.05;
constexpr std::size_t ModelSize = 4 * 1024 * 1024;
constexpr const char* FileName = "fw_1033.bin";

struct LargeModel
{
    LargeModel()
    {
        configuration.WriteFile(FileName, std::string(ModelSize, 'm'));
    }

    TestConfiguration configuration;
    SilentLogger logger;
    ConfigurationReader reader{configuration.Path(), &logger};
};

void Load(LargeModel& model)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    const HRESULT result = PrivateAccess::LoadFile(model.reader, model.configuration.Directory(), FileName, &data, &size);
    const std::unique_ptr<uint8_t[]> owner(data);
    if (FAILED(result) || size != ModelSize)
    {
        throw std::runtime_error("the model is not loaded");
    }
    benchmark::DoNotOptimize(data);
}

} // namespace

void RegisterModelFile()
{
    const auto model = std::make_shared<LargeModel>();
    Register({"LoadFile, 4 MB model", Goal, [model] { Load(*model); },
              [model] {
                  benchmark::DoNotOptimize(ReadFileOnly(model->configuration.Directory() + "\\" + FileName).get());
              }});
}
