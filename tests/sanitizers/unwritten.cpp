// Branches on a word that it never wrote.
#include <cstdlib>

int main()
{
    int volatile* const word = static_cast<int*>(std::malloc(sizeof(int)));
    return *word == 7 ? 1 : 0;
}
