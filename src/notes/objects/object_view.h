// What the typed views of the object model share.
//
// A view is an Object that says of which class it is: each member that the program uses stands in it once,
// with its arguments and in the letters in which it is asked for. A view costs nothing beside the Object; it
// may be empty, and every use of an empty one raises 91. What a member raises is what the model raises;
// besides, 13 or 424 where it gives a value of another kind than the view reads.
#pragma once

#include <concepts>
#include <utility>

#include "notes/bridge.h"
#include "notes/literals.h"

namespace lens {

class ObjectView : public Object {
 public:
  ObjectView() = default;
  // Any object of the model may be taken for one of the class, a view of another class may not.
  ObjectView(std::same_as<Object> auto object) : Object(std::move(object)) {}
};

}  // namespace lens
