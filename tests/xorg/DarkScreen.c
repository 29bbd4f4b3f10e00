/* A module for the Xorg server. It adds power management (DPMS) to the server's "dummy" driver, which draws screens
   without hardware. Tests can then switch these screens off like real ones. */
#include "xorg-server.h"

#include "xf86.h"
#include "xf86Module.h"

extern _X_EXPORT DriverPtr* xf86DriverList;
extern _X_EXPORT int xf86NumDrivers;

static Bool (*probeOfDummy)(DriverPtr, int);
static Bool (*initOfDummy)(ScreenPtr, int, char**);

static void switchPower(ScrnInfoPtr screen, int level, int flags) {
    (void)flags;
    xf86DrvMsg(screen->scrnIndex, X_INFO, "power level %d\n", level);
}

static Bool initScreen(ScreenPtr screen, int count, char** arguments) {
    return initOfDummy(screen, count, arguments) && xf86DPMSInit(screen, switchPower, 0);
}

static Bool probe(DriverPtr driver, int flags) {
    if (!probeOfDummy(driver, flags)) return FALSE;
    if (!(flags & PROBE_DETECT)) {
        initOfDummy = xf86Screens[0]->ScreenInit;
        xf86Screens[0]->ScreenInit = initScreen;
    }
    return TRUE;
}

static void* setup(void* module, void* options, int* major, int* minor) {
    (void)options;
    if (!LoadSubModule(module, "dummy", NULL, NULL, NULL, NULL, major, minor)) return NULL;
    for (int i = 0; i < xf86NumDrivers; i++) {
        if (!xf86DriverList[i] || strcmp(xf86DriverList[i]->driverName, "dummy") != 0) continue;
        probeOfDummy = xf86DriverList[i]->Probe;
        xf86DriverList[i]->Probe = probe;
        return module;
    }
    return NULL;
}

static XF86ModuleVersionInfo version = {"darkscreen",
                                        "KOVA",
                                        MODINFOSTRING1,
                                        MODINFOSTRING2,
                                        XORG_VERSION_CURRENT,
                                        1,
                                        0,
                                        0,
                                        ABI_CLASS_VIDEODRV,
                                        ABI_VIDEODRV_VERSION,
                                        MOD_CLASS_NONE,
                                        {0, 0, 0, 0}};
_X_EXPORT XF86ModuleData darkscreenModuleData = {&version, setup, NULL};
