#pragma once

struct WAVEFORMATEX;
