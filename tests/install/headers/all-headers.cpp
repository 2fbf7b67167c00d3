// Every installed header of both libraries, compiled with the strictest
// warnings a consumer may use and a plain -I (no -isystem to hide them).
#include <model_KelAdmin.h>

#include <KxCodebook.h>
#include <KxCodebookDdi.h>
#include <KxCodebookDiff.h>
#include <KxCodebookJson.h>

int main()
{
    return 0;
}
