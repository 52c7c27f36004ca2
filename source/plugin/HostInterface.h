#pragma once
// The host's calling convention, kept name for name and argument for
// argument: (text, number, block 1, size 1, block 2, size 2, host block),
// returning a float the host reads as 1.0 for success.

extern "C" {

using HostEntryPoint = float (*)(char* text, double number, char* block1, int size1,
                                 char* block2, int size2, void* hostBlock);

// Opens a session: block 1 holds the state record, block 2 the transform
// record (only its flags word is read).
float beginSession(char* text, double number, char* block1, int size1, char* block2, int size2,
                   void* hostBlock);
// Evaluates a batch: block 2 holds an int count n and n points (x, y, z
// floats); block 1 receives n floats.
float continueSession(char* text, double number, char* block1, int size1, char* block2,
                      int size2, void* hostBlock);
// Evaluates the point of three floats at `text` and returns its value.
float continueSessionOne(char* text, double number, char* block1, int size1, char* block2,
                         int size2, void* hostBlock);
// Closes the session.
float endSession(char* text, double number, char* block1, int size1, char* block2, int size2,
                 void* hostBlock);
}
