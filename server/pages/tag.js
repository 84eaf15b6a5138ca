"use strict";

// The tag of this server. It obeys the commands that a page puts into window.dataLayer, as the gtag function does, and
// sends each event to the collect address of the server that it came from. It stores nothing in the browser.
(() => {
    const layer = (window.dataLayer = window.dataLayer || []);
    if (layer.hasTag) {
        return; // a second copy would send everything twice
    }
    layer.hasTag = true;

    const patience = 10000; // milliseconds
    const collectAddress = new URL("/g/collect", document.currentScript.src).href;
    const session = Math.floor(Date.now() / 1000);
    const ownClientId = Math.floor(Math.random() * 2 ** 31) + "." + session;
    const targets = new Map(); // what was configured, by measurement identifier
    const commonParameters = {};
    const userProperties = {};
    let lastRequest = Promise.resolve();

    const objectOr = (value, other) => (value !== null && typeof value === "object" ? value : other);

    // Numbers are marked as such. What is no number, text or Boolean has no form in the protocol.
    function append(items, prefix, values) {
        for (const [name, value] of Object.entries(values)) {
            if (Number.isFinite(value)) {
                items.append(prefix + "n." + name, value);
            } else if (typeof value === "string" || typeof value === "boolean") {
                items.append(prefix + "." + name, value);
            }
        }
    }

    // The requests go one after the other, so that events arrive in their order. One that fails is lost.
    function post(address) {
        const send = () =>
            fetch(address, {
                method: "POST",
                keepalive: true,
                credentials: "omit",
                cache: "no-store",
                signal: AbortSignal.timeout(patience),
            });
        lastRequest = lastRequest.then(send).catch(() => {});
    }

    function sendEvent(target, name, parameters) {
        target.requests += 1;
        const items = new URLSearchParams({
            v: "2",
            tid: target.id,
            cid: target.clientId,
            sid: session,
            sct: "1",
            seg: "1",
            _s: target.requests,
            en: name,
            ul: navigator.language.toLowerCase(),
        });
        if (target.isDebugging) {
            items.append("_dbg", "1");
        }
        append(items, "up", userProperties);
        append(items, "ep", { ...commonParameters, ...target.parameters, ...objectOr(parameters, {}) });
        // The form encoding writes a blank as "+", which this protocol takes for a plus sign.
        post(collectAddress + "?" + items.toString().replaceAll("+", "%20"));
    }

    const commands = {
        // Every event goes to every identifier configured so far. The settings that are not named become parameters.
        config(id, settings) {
            const { client_id, send_page_view, debug_mode, user_properties, ...parameters } = objectOr(settings, {});
            const target = targets.get(id) || { id: id, requests: 0 };
            target.clientId = client_id || target.clientId || ownClientId;
            target.isDebugging = debug_mode === true;
            target.parameters = parameters;
            Object.assign(userProperties, objectOr(user_properties, {}));
            targets.set(id, target);
            if (send_page_view !== false) {
                sendEvent(target, "page_view", {});
            }
        },

        set(name, value) {
            const { user_properties, ...parameters } = objectOr(name, { [name]: value });
            Object.assign(userProperties, objectOr(user_properties, {}));
            Object.assign(commonParameters, parameters);
        },

        event(name, parameters) {
            for (const target of targets.values()) {
                sendEvent(target, name, parameters);
            }
        },
    };

    // A command is the arguments object of a call; other entries are not for this tag.
    function obey(entry) {
        if (Object.prototype.toString.call(entry) === "[object Arguments]" && Object.hasOwn(commands, entry[0])) {
            const [command, ...rest] = entry;
            commands[command](...rest);
        }
    }

    // From now on entries are obeyed at once and not kept: a page can stay open for weeks.
    layer.splice(0).forEach(obey);
    layer.push = (...entries) => {
        entries.forEach(obey);
        return layer.length;
    };
})();
