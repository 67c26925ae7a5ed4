// The types of the QML module.
#pragma once

/// Registers what pages can use of org.atollia.reef 1.0, under the address that they import.
void registerReefTypes(const char* uri);
