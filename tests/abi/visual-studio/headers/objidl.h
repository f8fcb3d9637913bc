#pragma once

struct IStream;
