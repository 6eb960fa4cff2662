#pragma once

namespace pelmora::platform {

/// What the scripted decoder does with a request: its `longestSide` says which.
enum FakeBehaviour : int {
  kAnswersWell = 100,
  kSaysItIsDamaged,
  kDiesBeforeReading,
  kDiesAfterReading,
  kDiesAfterTheMemory,
  kDiesOfItsTimeLimit,
  kEndsOutOfMemory,
  kEndsWithStatusSeven,
  kEndsWithoutASandbox,
  kClosesAndLivesOn,
  kHangs,
  kFillsTheMemory,
  kIsLeaving,
  kIsLeavingAfterAFailure,
  kAnswersTwice,
  // Wrong messages:
  kSendsNothing,
  kSendsHalfAReply,
  kSendsTooMuch,
  kSendsAnotherMagic,
  kSendsAnotherSerial,
  kSendsNoOutcome,
  kSendsNoFlag,
  kSendsNoOrientation,
  kSendsEndlessText,
  kSendsEndlessReason,
  kSendsNoReason,
  // Wrong sizes:
  kSendsNoPixels,
  kSendsNegativeSides,
  kSendsHugeSides,
  kSendsMoreThanWasAsked,
  kSendsAnotherShape,
  // Wrong memory:
  kSendsNoMemory,
  kSendsTwoMemories,
  kSendsManyDescriptors,
  kSendsMemoryWithAFailure,
  kSendsUnsealedMemory,
  kSendsGrowingMemory,
  kSendsShortMemory,
  kSendsLongMemory,
  kSendsAFile,
  kSendsASocket,
  // Right, but strange:
  kSendsControlCharacters,
  kSaysControlCharacters,
};

/// The picture of the one that answers well: 4 × 2 pixels, bytes counted from 0.
constexpr int kFakeWidth = 4;
constexpr int kFakeHeight = 2;

}  // namespace pelmora::platform
