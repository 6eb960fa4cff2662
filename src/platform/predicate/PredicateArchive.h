#pragma once

#include "platform/predicate/Predicate.h"
#include "platform/PropertyList.h"
#include "shared/Result.h"

#include <cstdint>
#include <span>

namespace pelmora::platform::predicate {

// Predicates in keyed archives, as the platform writes them:
//
//   NSComparisonPredicate          NSLeftExpression, NSRightExpression, NSPredicateOperator
//   NSCompoundPredicate            NSCompoundPredicateType, NSSubpredicates (NSArray)
//   NSTruePredicate, NSFalsePredicate
//
//   NSComparisonPredicateOperator  < <= > >=                 with NSOptions
//   NSEqualityPredicateOperator    == !=                     with NSOptions, NSNegate (1 for !=)
//   NSMatchingPredicateOperator, NSLikePredicateOperator     with NSFlags
//   NSSubstringPredicateOperator   BEGINSWITH ENDSWITH       with NSFlags, NSPosition (0 and 1)
//   NSInPredicateOperator          IN CONTAINS               with NSFlags
//   NSBetweenPredicateOperator     BETWEEN                   with NSOptions
//
// each operator with NSOperatorType and NSModifier too. NSOptions and NSFlags are the comparison's
// options. Expressions have NSExpressionType and
//
//   NSConstantValueExpression      NSConstantValue
//   NSAggregateExpression          NSCollection (an NSArray of NSConstantValueExpressions)
//   NSKeyPathExpression            NSOperand (an NSSelfExpression), NSSelectorName ("valueForKey:",
//                                  or with dots in the path "valueForKeyPath:"), NSArguments (an
//                                  NSArray of an NSKeyPathSpecifierExpression, with NSKeyPath)
//   NSSelfExpression
//
// A constant is a string, a number, a boolean, an NSDate, an NSArray of constants or an NSNull.

/// Reads an archive whose root is a predicate. Beside what is written, it may have the mutable
/// twins of the classes of values, CONTAINS as an NSSubstringPredicateOperator, the options under
/// the other of their two names, a key path's name as an NSConstantValueExpression, and no integer
/// where that would be 0. An NSAggregateExpression, whose NSCollection is an NSArray of
/// expressions, is read as an `Aggregate`, if all of them are constants or such aggregates.
/// NSNegate and NSPosition, which repeat the operator, are not looked at. Operators of other
/// numbers, the custom selector's among them, are kept; no comparison by them holds. The platform's
/// other expressions are read as `UnknownExpression`. Everything else is an error, of one line. The
/// bytes are untrusted: depth and counts are bounded, and what contains itself is refused.
/// Thread: any.
[[nodiscard]] Result<Predicate> readPredicateArchive(std::span<const std::uint8_t> bytes);

/// Archives a predicate; equal strings and equal key paths are archived once. An error for what no
/// archive says: unknown expressions and operators, the custom selector, a key path without a name,
/// numbers that are not finite, text that is not UTF-8, a negation of none or several, and what is
/// beyond the limits of predicates. All else reads back equal. Thread: any.
[[nodiscard]] Result<plist::Bytes> writePredicateArchive(const Predicate& predicate);

}  // namespace pelmora::platform::predicate
