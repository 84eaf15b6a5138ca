// The least that a tag of the usage statistics does: every event goes out at once, by beacon.
{
  const collect = new URL("/g/collect?by=tag", document.currentScript.src);
  const work = ([command, name, params]) => {
    if (command === "event")
      navigator.sendBeacon(collect, JSON.stringify({name, params}));
  };
  const queue = window.dataLayer;
  queue.forEach(work);
  queue.push = work;
}
