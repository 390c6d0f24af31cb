#pragma once

namespace kelvo {

/// Opens /dev/null for each closed standard stream and ignores SIGPIPE. Otherwise a socket could get the number of a
/// closed stream and receive our output, and a closed pipe would end the process. Call first in main.
void keepStandardStreams();

}  // namespace kelvo
