#include "platform/ostrine/wmi.h"

#include <utility>

// Copying a connection is ours, whoever implements the rest: it takes part in every shared piece of it.

CWMI::CWMI(const CWMI& other)
    : connection_{other.connection_[0], other.connection_[1], other.connection_[2]},
      name_space_(other.name_space_),
      state_(other.state_) {
  for (ConnectionPart* part : connection_) {
    if (part != nullptr) part->AddRef();
  }
}

CWMI& CWMI::operator=(const CWMI& other) {
  CWMI copy(other);  // the old connection goes with the copy, after its names have changed places
  std::swap(connection_, copy.connection_);
  std::swap(name_space_, copy.name_space_);
  std::swap(state_, copy.state_);
  return *this;
}
