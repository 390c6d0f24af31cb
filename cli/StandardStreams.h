#pragma once

namespace kelvo {

/// Makes the three standard streams safe to use for a program that goes on when nobody hears it: one that is closed
/// becomes one that gives and takes nothing, so that no window system's socket gets its number and then our lines; and
/// a reader who leaves is an error of the write, not the end of the process. Call first of all, from main.
void keepStandardStreams();

}  // namespace kelvo
