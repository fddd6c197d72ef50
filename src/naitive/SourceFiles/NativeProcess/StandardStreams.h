// The descriptors that the host speaks through, when they are not what they should be.
#ifndef NATIVEPROCESS_STANDARDSTREAMS_H_
#define NATIVEPROCESS_STANDARDSTREAMS_H_

namespace Ravik {

// Takes those of the descriptors 0, 1 and 2 that the host has left closed, so that no file or
// socket of the worker's gets their number and, with it, the answers. Reading from them and writing
// to them fails. Comes before anything that opens a file; ends the process when it cannot.
void OccupyStandardDescriptors();

// The exit status when the write of an answer has failed with error, a value of errno. One line on
// standard error says so, except when the host has closed its end.
int LoseAnswer(int error);

}  // namespace Ravik

#endif  // NATIVEPROCESS_STANDARDSTREAMS_H_
