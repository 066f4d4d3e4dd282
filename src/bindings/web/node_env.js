// The web build's programs under node see the host's environment, as the
// desktop's program does (a script's ${NAME}, FABLEWRIGHT_SOUNDFONT).
Module['preRun'] = Module['preRun'] || [];
Module['preRun'].push(function () { Object.assign(ENV, process.env); });
