// How loud the sounds are, beside the player of sounds itself.
#pragma once

/// Loudness of everything that plays or will play on the open device, in percent. Without a device
/// it does nothing.
void setLoudness(float percent);
