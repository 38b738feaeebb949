#pragma once

#include "platform/ostrine/guid.h"

/// What a word of a CWMI's connection points to, when it is not null: a shared object that begins as every
/// COM interface does and counts its owners. `AddRef` takes part in it, `Release` gives the part back, and
/// the last release ends it. A system's own interface pointer may stand in a word as it is.
struct ConnectionPart {
  virtual long QueryInterface(const GUID& interface_id, void** object) = 0;
  virtual unsigned long AddRef() = 0;
  virtual unsigned long Release() = 0;

 protected:
  ~ConnectionPart() = default;
};
