#pragma once

struct IMFMediaBuffer;
struct IMFMediaType;
