#include "inputmethods/MethodProgram.h"

int main(int argc, char *argv[])
{
    return lab::runMethod(argc, argv, QStringLiteral(MEVO_METHOD));
}
