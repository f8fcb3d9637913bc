#pragma once

// Makes the Windows headers declare their GUIDs instead of defining each of them in every file.
#define EXTERN_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) extern "C" const IID name
