// Replaces the wall clock of the test program.
#pragma once

void SetClock(long seconds, long microseconds);
