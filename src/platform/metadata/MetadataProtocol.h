#pragma once

#include "platform/metadata/FileMetadata.h"
#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace pelmora::platform::metadata {

// What the saver and its inspector, the program that reads what is embedded in files, say to each
// other, over a socket that keeps messages whole (SOCK_SEQPACKET): a request with the descriptor of
// a file, and a reply to each in the same order. Several requests may be sent ahead of the replies.
// Before all, when the inspector is ready, it sends a greeting: a reply with the serial number 0 in
// which nothing was read. So an inspector that cannot start is told from one that dies of a file.
// Both are built together, so the layout is the compiler's own. The saver believes nothing of a
// reply.

inline constexpr std::uint32_t kInspectMagic = 0x50'4C'4D'51;
inline constexpr std::uint32_t kInspectedMagic = 0x50'4C'4D'52;

/// The descriptor that the inspector finds its end of the socket on.
inline constexpr int kInspectorSocket = 3;
/// How many requests are sent ahead at most.
inline constexpr std::size_t kMaxAhead = 32;
/// The most that a reply has.
inline constexpr std::size_t kMaxReplyBytes = 48 * 1024;
/// The memory that the inspector may take beyond what it has when it is started.
inline constexpr std::int64_t kInspectorMegabytes = 1536;
/// What the inspector gives itself for a file; it ends a little later.
inline constexpr int kInspectSeconds = 10;
/// Larger files are not looked into.
inline constexpr std::int64_t kMaxInspectedBytes = 1024LL << 20;

struct InspectRequest {
  std::uint32_t magic = kInspectMagic;
  std::uint32_t serial = 0;  // from 1 on; the reply repeats it
};

enum class InspectOutcome : std::uint32_t {
  read = 1,    // what is embedded follows; it may be nothing
  failed = 2,  // a line of text follows: what is wrong with the file
};

struct InspectReply {
  std::uint32_t magic = kInspectedMagic;
  std::uint32_t serial = 0;
  InspectOutcome outcome = InspectOutcome::failed;
  std::uint32_t isLeaving = 0;  // 1: it takes no more requests
};

static_assert(std::is_trivially_copyable_v<InspectReply>);
static_assert(std::has_unique_object_representations_v<InspectReply>);

/// How the inspector ends, as the status of its process.
enum class InspectorExit : int {
  done = 0,  // the socket was closed, or it said that it is leaving
  notStarted = 20,
  notSandboxed = 21,
  brokenRequest = 23,
};

/// What is embedded in a file, as the bytes that follow a reply. An attribute that would bring the
/// reply beyond `kMaxReplyBytes` is left out, as a whole.
[[nodiscard]] std::vector<std::byte> encodeMetadata(const FileMetadata& metadata);

/// Reads it back. The bytes are untrusted: attributes that are not embedded, texts with control
/// characters or too long, and values beyond the attribute's number are all errors: what breaks the
/// protocol, in a few words. Thread: any.
[[nodiscard]] Result<FileMetadata> decodeMetadata(std::span<const std::byte> bytes);

}  // namespace pelmora::platform::metadata
