#pragma once

namespace pelmora::decoder {

/// Unmaps the pages of programs and libraries that starting has touched and nothing has changed:
/// what is needed again is mapped again from the file cache, at once. libvips brings a hundred and
/// forty libraries, of which most pictures use five. Thread: the only one.
void giveBackLibraryPages();

}  // namespace pelmora::decoder
