// The options that are settings of the transform.
#pragma once

#include "host/command/Options.h"

#include <NMFVDeinterlace.h>

namespace host {

// The frames that the settings are for: rectangles must lie within the size, and are turned over for frames that are
// stored top row first.
struct SettingsFrame {
    int width = 0;
    int height = 0;
    bool bottomUp = false;
};

// Level 2 defaults first (unless options.saved), then every option that was given. The input type must be set. Throws
// HostError, with ExitCode::Usage for a rectangle that leaves the picture, else with ExitCode::Transform.
void ApplySettings(INMFVDeinterlace& control, const Options& options, const SettingsFrame& frame);

// The region of interest in picture coordinates, whatever the frames' row order. What is stored may leave the frame,
// and its edges may be the wrong way round. Throws HostError with ExitCode::Transform.
Area ReadRegion(INMFVDeinterlace& control, const SettingsFrame& frame);
// The area must lie within the frame, and hold a sample. Whether a region is used is left as it is. Throws HostError
// with ExitCode::Transform.
void PutRegion(INMFVDeinterlace& control, const Area& area, const SettingsFrame& frame);

// What the transform does with frames under its present settings.
struct ActiveSettings {
    Mode mode = Mode::Auto;
    double sensitivity = 1.0;
    Area area; // of the picture, that is deinterlaced
};
ActiveSettings ReadActiveSettings(INMFVDeinterlace& control, const SettingsFrame& frame);

} // namespace host
