// The account of every reference that this process holds on an object of the stand-in frameworks.
//
// Ownership is checked more strictly than on the platform. Each of the following ends the program
// with one line on standard error that names the function, the object and the function that made
// it: using or releasing an object after its last reference was released (as long as the object
// is among the last few thousand that were), using one kind of object as another, using the value
// of an out-parameter of a call that failed, and using a null reference.
#pragma once

#include <string>

namespace simulator::ledger {

// How many references are held, by the program and by arrays on their members.
long liveReferences();

// One line for each object that they are held on: what it is, how many references, who made it.
std::string describeLive();

// Leaves the references that are held now out of the account, for a thread that never runs again.
// They stay valid.
void abandon();

// Starts a new account: every object is gone, and whoever still uses one is stopped.
void reset();

}  // namespace simulator::ledger
