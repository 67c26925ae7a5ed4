#pragma once

#include <KConfig>
#include <memory>

/// Opens the configuration file `name` of this person, over those of the same name that the
/// administrator gave everyone, without the desktop's global settings; a change is written to the
/// person's own. A file among them that is no plain file, or larger than a mebibyte, is told in one
/// line, once per process, and none is read: the result is then empty and writes nothing.
std::unique_ptr<KConfig> openSettings(const QString& name);
